#include "app/pages/AlertsPage.hpp"

#include "app/pages/AlertLines.hpp"
#include "app/pages/AlertsView.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDoubleSpinBox>
#include <QGuiApplication>
#include <QMenu>
#include <QTest>

namespace ostrivane {
namespace {

constexpr double hour = 3600;

class AlertsPageTest : public ::testing::Test {
protected:
    /// Stores alerts as an earlier run would have, an hour apart, and begins anew.
    void fill(int count, const char* kind = "sustainedCPU", const char* severity = "warning") {
        for (int number = 0; number < count; ++number)
            harness.model->history().recordAlert(Date{harness.now.seconds - number * hour}, kind, severity,
                                                 "Alert " + std::to_string(number), "Its body.", "exe:/usr/bin/node");
        harness.settle();
        harness.model->start();
        harness.settle();
        page.emplace(harness.page);
        harness.show(*page);
        list = page->findChild<AlertsView*>();
    }
    const Preferences& chosen() { return *harness.model->settings(); }
    const AlertRule& rule(AlertKind kind) { return chosen().alertRules[static_cast<std::size_t>(kind)]; }

    PageHarness harness;
    std::optional<AlertsPage> page;
    AlertsView* list = nullptr;
};

TEST_F(AlertsPageTest, listsOpensAndCopiesAlerts) {
    fill(30);
    ASSERT_GT(list->model()->rowCount(), 30);
    ASSERT_TRUE(list->isVisible());
    page->focusMain();
    const QPoint place = list->visualRect(list->currentIndex()).center();
    QContextMenuEvent asked(QContextMenuEvent::Mouse, place, list->viewport()->mapToGlobal(place));
    QApplication::sendEvent(list->viewport(), &asked);
    auto* menu = page->findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions()[0]->text(), QStringLiteral("Show node"));
    menu->actions()[1]->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Alert 0\nIts body."));
    menu->close();

    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::applications);
    EXPECT_EQ(harness.model->selectedAppKey(), "exe:/usr/bin/node");
}

TEST_F(AlertsPageTest, opensThePageOfAMachinesTroubleByAClickButNothingByADay) {
    fill(1, "swapGrowth", "critical");
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(list->model()->index(0, 0)).center());
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::overview);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(list->model()->index(1, 0)).center());
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::memory);
    EXPECT_FALSE(harness.model->selectedAppKey());
}

TEST_F(AlertsPageTest, filtersAndSaysThatNothingMatches) {
    fill(3);
    auto* filter = named<SegmentedControl>(*page, "Alerts that are shown");
    filter->setFocus();
    QTest::keyClick(filter, Qt::Key_Right);
    EXPECT_TRUE(list->isVisible()); // warnings
    QTest::keyClick(filter, Qt::Key_Right);
    EXPECT_FALSE(list->isVisible());
    button(*page, "Clear Filter")->click();
    EXPECT_TRUE(list->isVisible());
    EXPECT_EQ(filter->index(), 0);
}

TEST_F(AlertsPageTest, clearsOnlyWhatIsConfirmed) {
    fill(3);
    answerDialog("Cancel");
    button(*page, "Clear all alerts…")->click();
    EXPECT_EQ(harness.state().alerts.size(), 3U);
    answerDialog("Clear");
    button(*page, "Clear all alerts…")->click();
    harness.settle();
    EXPECT_TRUE(harness.state().alerts.empty());
    EXPECT_TRUE(harness.storedAlerts().empty());
    EXPECT_FALSE(list->isVisible());
    EXPECT_FALSE(button(*page, "Clear all alerts…")->isEnabled());
}

TEST_F(AlertsPageTest, writesEveryChangeOfARule) {
    fill(0);
    button(*page, "Sustained high CPU")->click();
    EXPECT_FALSE(rule(AlertKind::sustainedCPU).enabled);
    button(*page, "Numbers of “Sustained high CPU”")->click();
    const auto step = [&](const char* name, Qt::Key key) {
        auto* box = named<QDoubleSpinBox>(*page, name);
        ASSERT_NE(box, nullptr) << name;
        QTest::keyClick(box, key);
    };
    step("Sustained high CPU, Threshold, in % of a core", Qt::Key_Up);
    step("Sustained high CPU, Lasting, in minutes", Qt::Key_Down);
    step("Sustained high CPU, Not again for, in minutes", Qt::Key_Up);
    button(*page, "Notify me of “Sustained high CPU”")->click();
    EXPECT_EQ(rule(AlertKind::sustainedCPU), (AlertRule{AlertKind::sustainedCPU, false, 81, 540, 3660, false}));
    for (std::size_t index = 1; index < alertKindCount; ++index)
        EXPECT_EQ(chosen().alertRules[index], AlertRule::defaults[index]);

    answerDialog("Restore");
    button(*page, "Restore Defaults…")->click();
    EXPECT_EQ(chosen().alertRules, Preferences().alertRules);
    EXPECT_TRUE(button(*page, "Sustained high CPU")->isChecked());
}

TEST_F(AlertsPageTest, whatIsChosenCountsFromTheNextSnapshotOn) {
    fill(0);
    const auto runOutOfMemory = [&] {
        SystemSnapshot snapshot = SystemSnapshot::empty(harness.now + 5);
        snapshot.interval = 5;
        snapshot.memory.total = 16'000'000'000;
        snapshot.applications = {{.key = "exe:hungry", .name = "hungry", .pids = {1}, .memory = 8'000'000'000}};
        harness.take(std::make_shared<SystemSnapshot>(std::move(snapshot)));
    };
    button(*page, "Excessive memory")->click();
    runOutOfMemory();
    EXPECT_TRUE(harness.state().alerts.empty());
    answerDialog("Restore");
    button(*page, "Restore Defaults…")->click();
    runOutOfMemory();
    ASSERT_EQ(harness.state().alerts.size(), 1U);
    EXPECT_EQ(harness.state().alerts.front().kind, AlertKind::excessiveMemory);
}

TEST_F(AlertsPageTest, cannotMakeARuleThatNeverFires) {
    fill(0);
    auto rules = chosen().alertRules;
    rules[static_cast<std::size_t>(AlertKind::sustainedCPU)].window = 120;
    harness.model->settings().set(&Preferences::alertRules, rules);
    button(*page, "Numbers of “Sustained high CPU”")->click();
    auto* box = named<QDoubleSpinBox>(*page, "Sustained high CPU, Lasting, in minutes");
    QTest::keyClick(box, Qt::Key_Down);
    EXPECT_EQ(rule(AlertKind::sustainedCPU).window, 120);
}

TEST_F(AlertsPageTest, showsWhatAnotherProgramChose) {
    fill(0);
    button(*page, "Numbers of “Heavy disk writes”")->click();
    auto rules = chosen().alertRules;
    AlertRule& written = rules[static_cast<std::size_t>(AlertKind::diskWrite)];
    written.enabled = false;
    written.window = 301; // no whole minutes
    harness.model->settings().set(&Preferences::alertRules, rules);
    harness.model->settings().set(&Preferences::notificationsEnabled, false);
    EXPECT_FALSE(button(*page, "Heavy disk writes")->isChecked());
    EXPECT_FALSE(button(*page, "Notifications")->isChecked());
    auto* box = named<QDoubleSpinBox>(*page, "Heavy disk writes, Lasting, in seconds");
    EXPECT_EQ(box->value(), 301);
    button(*page, "Notifications")->click();
    EXPECT_TRUE(chosen().notificationsEnabled);
}

TEST_F(AlertsPageTest, hasTwoTabsWhereTheWindowIsNarrow) {
    fill(2);
    harness.show(*page, true);
    EXPECT_TRUE(list->isVisible());
    EXPECT_FALSE(button(*page, "Restore Defaults…")->isVisible());
    auto* tabs = named<SegmentedControl>(*page, "Part of the page");
    tabs->setFocus();
    QTest::keyClick(tabs, Qt::Key_Right);
    EXPECT_FALSE(list->isVisible());
    EXPECT_TRUE(button(*page, "Restore Defaults…")->isVisible());
    harness.show(*page, false);
    EXPECT_TRUE(list->isVisible());
    EXPECT_TRUE(button(*page, "Restore Defaults…")->isVisible());
}

} // namespace
} // namespace ostrivane
