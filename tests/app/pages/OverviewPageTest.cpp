#include "app/pages/OverviewPage.hpp"

#include "app/pages/HealthPage.hpp"
#include "app/widgets/EvidenceList.hpp"
#include "app/widgets/MetricTile.hpp"
#include "app/widgets/RankList.hpp"
#include "app/widgets/Type.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace ostrivane {

namespace {

/// Counts what the widgets below it are asked for.
class Watcher final : public QObject {
public:
    explicit Watcher(QWidget& root) {
        for (auto* widget : root.findChildren<QWidget*>())
            widget->installEventFilter(this);
    }
    int layouts = 0;
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        layouts += event->type() == QEvent::LayoutRequest ? 1 : 0;
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

std::vector<MetricTile*> visibleTiles(const QWidget& page) {
    std::vector<MetricTile*> tiles;
    for (auto* found : page.findChildren<QAbstractButton*>())
        if (auto* tile = dynamic_cast<MetricTile*>(found); tile && tile->isVisible())
            tiles.push_back(tile);
    return tiles;
}

SharedSnapshot later(const SystemSnapshot& snapshot, double seconds) {
    auto next = std::make_shared<SystemSnapshot>(snapshot);
    next->timestamp = next->timestamp + seconds;
    return next;
}

} // namespace

TEST(OverviewPage, everyTileAndRowLeadsSomewhere) {
    PageHarness harness;
    harness.play(developer);
    AppModel& model = *harness.model;
    OverviewPage page(harness.page);
    harness.show(page);
    const std::vector<MetricTile*> tiles = visibleTiles(page);
    EXPECT_GE(tiles.size(), 2U);
    for (MetricTile* tile : tiles) {
        model.select(Page::overview);
        tile->click();
        EXPECT_NE(model.navigation().selectedPage(), Page::overview);
    }

    auto* list = named<RankList>(page, "Using the most memory");
    ASSERT_NE(list, nullptr);
    ASSERT_GT(list->rows().size(), 1U);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);
    const std::string second = list->rows()[1].key;
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(model.selectedAppKey(), second);
    EXPECT_EQ(model.navigation().selectedPage(), Page::applications);
}

TEST(OverviewPage, anInsightOpensItsPageWithItsApplication) {
    PageHarness harness;
    AppModel& model = *harness.model;
    OverviewPage page(harness.page);
    harness.show(page);
    model.setWindowVisible(true);
    harness.play(troubledDay);
    const auto& insights = harness.state().insights;
    ASSERT_FALSE(insights.empty());
    model.selectApp("before");
    auto* list = named<EvidenceList>(page, "Insights");
    ASSERT_TRUE(list && !list->rows().empty());
    EXPECT_LE(list->rows().size(), 4U);
    const Insight first = insights.front();
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(model.selectedAppKey(), first.appKey);
    EXPECT_EQ(rawValue(model.navigation().selectedPage()), first.destination);
}

TEST(OverviewPage, startsAndStopsASession) {
    PageHarness harness;
    harness.play(virtualMachine);
    OverviewPage page(harness.page);
    harness.show(page);
    button(page, "Start Session")->click();
    EXPECT_TRUE(harness.state().session.has_value());
    button(page, "Stop Session")->click();
    EXPECT_FALSE(harness.state().session.has_value());
    EXPECT_TRUE(button(page, "Start Session")->isVisible());
}

TEST(OverviewPage, layOutAndPaintNothingThatStaysTheSame) {
    PageHarness harness;
    harness.model->setWindowVisible(true); // it is judged on every snapshot then
    harness.play(laptop);
    const SystemSnapshot last = *harness.state().snapshot;
    for (const bool isOverview : {true, false}) {
        std::unique_ptr<PageView> page;
        if (isOverview)
            page = std::make_unique<OverviewPage>(harness.page);
        else
            page = std::make_unique<HealthPage>(harness.page);
        harness.show(*page);
        for (int tick = 1; tick <= 210; ++tick) // means over five minutes come to rest
            harness.take(later(last, 2 * tick));
        for (int round = 0; round < 5; ++round) // a layout may ask for another one
            QApplication::processEvents();
        Watcher watcher(*page);
        harness.take(later(last, 422)); // the same figures again: the lines of the tiles alone move on
        QApplication::processEvents();
        EXPECT_EQ(watcher.layouts, 0) << isOverview;
        EXPECT_LE(watcher.paints, 12) << isOverview;
        page->hide();
        QApplication::processEvents();
        watcher.layouts = watcher.paints = 0;
        harness.take(later(last, 424));
        QApplication::processEvents();
        EXPECT_EQ(watcher.layouts + watcher.paints, 0) << isOverview;
    }
}

TEST(OverviewPage, bearsWhateverAMachineSays) {
    for (const double base : {13.0, 26.0}) {
        Type::setBase(base);
        for (const bool narrow : {false, true}) {
            PageHarness harness;
            OverviewPage overview(harness.page);
            HealthPage health(harness.page);
            for (PageView* page : std::initializer_list<PageView*>{&overview, &health}) {
                page->setLayoutDirection(narrow ? Qt::RightToLeft : Qt::LeftToRight);
                harness.show(*page, narrow);
                EXPECT_FALSE(page->grab().isNull()); // before any reading
                harness.take(std::make_shared<SystemSnapshot>(damagedSnapshot()));
                harness.take(later(damagedSnapshot(), 2));
                QApplication::processEvents();
                EXPECT_FALSE(page->grab().isNull());
                // Nothing asks for more width than a window has: neither the header nor what scrolls.
                EXPECT_LE(page->minimumSizeHint().width(), Type::px(narrow ? 764 : 1024)) << base;
                expectNothingCutOff(*page);
            }
        }
    }
    Type::setBase(13);
}

TEST(HealthPage, cardsOpenThePageThatExplainsThem) {
    PageHarness harness;
    harness.play(laptop);
    HealthPage page(harness.page);
    harness.show(page);
    button(page, "Open Memory")->click();
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::memory);
    button(page, "Edit rules")->click();
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::alerts);
}

} // namespace ostrivane
