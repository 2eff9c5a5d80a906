#include "app/pages/ApplicationsPage.hpp"

#include "app/pages/AppDetail.hpp"
#include "app/widgets/HistoryChart.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include <algorithm>

namespace ostrivane {
namespace {

class ApplicationsPageTest : public ::testing::Test {
protected:
    void show(bool narrow = false) {
        page.emplace(harness.page);
        harness.show(*page, narrow);
        table = named<QTableView>(*page, "Applications");
        filter = named<QLineEdit>(*page, "Filter Applications");
        detail = page->findChild<AppDetail*>();
    }
    const ApplicationSnapshot& app(const std::string& name) {
        const auto& all = harness.state().snapshot->applications;
        const auto found = std::ranges::find(all, name, &ApplicationSnapshot::name);
        if (found == all.end())
            throw std::runtime_error("there is no " + name);
        return *found;
    }
    QString cell(int row, int column) { return table->model()->index(row, column).data().toString(); }
    void click(int row) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(row, 0)).center());
    }
    bool says(const QString& words) {
        return std::ranges::any_of(page->findChildren<QWidget*>(), [&](QWidget* part) {
            const auto* label = dynamic_cast<TextLabel*>(part);
            return label && label->isVisible() && label->text().contains(words);
        });
    }
    bool hasCharts() { return std::ranges::all_of(detail->findChildren<HistoryChart*>(), &QWidget::isVisible); }
    /// The machine at the present, without one of its applications.
    void end(const std::string& key) {
        SystemSnapshot next = *harness.state().snapshot;
        std::erase_if(next.applications, [&](const ApplicationSnapshot& one) { return one.key == key; });
        std::erase_if(next.processes, [&](const ProcessSnapshot& one) { return one.appKey == key; });
        next.timestamp = next.timestamp + 60;
        harness.take(std::make_shared<SystemSnapshot>(std::move(next)));
    }

    PageHarness harness;
    std::optional<ApplicationsPage> page;
    QTableView* table = nullptr;
    QLineEdit* filter = nullptr;
    AppDetail* detail = nullptr;
};

TEST_F(ApplicationsPageTest, measuresBeforeItLists) {
    show();
    EXPECT_TRUE(says(QStringLiteral("Measuring…")));
    EXPECT_FALSE(table->isVisible());
    harness.play(developer);
    EXPECT_FALSE(says(QStringLiteral("Measuring…")));
    EXPECT_TRUE(table->isVisible());
    EXPECT_EQ(table->model()->rowCount(), static_cast<int>(harness.state().snapshot->applications.size()));
}

TEST_F(ApplicationsPageTest, isSortedTheSameByHeadAndMenu) {
    harness.play(developer);
    show();
    auto* menu = named<QComboBox>(*page, "Sort");
    EXPECT_EQ(menu->currentText(), QStringLiteral("Memory"));
    const auto& apps = harness.state().snapshot->applications;
    EXPECT_EQ(cell(0, 0), text(std::ranges::max_element(apps, {}, &ApplicationSnapshot::memory)->name));

    QTest::mouseClick(table->horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(table->columnViewportPosition(1) + 5, 5));
    EXPECT_EQ(menu->currentText(), QStringLiteral("CPU"));
    EXPECT_EQ(cell(0, 0), text(std::ranges::max_element(apps, {}, &ApplicationSnapshot::cpu)->name));

    menu->setCurrentIndex(5);
    Q_EMIT menu->activated(5);
    QStringList names;
    for (const ApplicationSnapshot& one : apps)
        names << text(one.name);
    names.sort(Qt::CaseInsensitive);
    QStringList listed;
    for (int row = 0; row < table->model()->rowCount(); ++row)
        listed << cell(row, 0);
    EXPECT_EQ(listed, names);
}

TEST_F(ApplicationsPageTest, offersToClearAFilterWithoutHits) {
    harness.play(developer);
    show();
    const int all = table->model()->rowCount();
    filter->setText(QStringLiteral("no such thing"));
    EXPECT_TRUE(says(QStringLiteral("No matches.")));
    button(*page, "Clear Filter")->click();
    EXPECT_TRUE(table->isVisible());
    EXPECT_EQ(table->model()->rowCount(), all);
    button(*page, "System & other users")->click();
    EXPECT_EQ(table->model()->rowCount(),
              std::ranges::count(harness.state().snapshot->applications, false, &ApplicationSnapshot::isSystem));
}

TEST_F(ApplicationsPageTest, opensWhatIsSelectedAndWhatOthersChose) {
    harness.play(developer);
    show();
    EXPECT_FALSE(detail->isVisible());
    click(1);
    EXPECT_TRUE(detail->isVisible());
    EXPECT_EQ(text(harness.state().appName(*harness.model->selectedAppKey())), cell(1, 0));
    QTest::keyClick(table, Qt::Key_Down);
    EXPECT_EQ(text(harness.state().appName(*harness.model->selectedAppKey())), cell(2, 0));
    EXPECT_TRUE(page->closeDetail());
    EXPECT_FALSE(detail->isVisible());
    EXPECT_FALSE(table->selectionModel()->hasSelection());
    EXPECT_FALSE(page->closeDetail());

    filter->setText(QStringLiteral("no such thing"));
    const std::string key = harness.state().snapshot->applications.back().key;
    harness.model->selectApp(key); // from another page
    EXPECT_TRUE(filter->text().isEmpty());
    ASSERT_TRUE(table->selectionModel()->hasSelection());
    EXPECT_EQ(cell(table->selectionModel()->selectedRows().front().row(), 0), text(harness.state().appName(key)));
}

TEST_F(ApplicationsPageTest, bringsIntoViewWhatAnotherPageLeadsTo) {
    harness.take(std::make_shared<SystemSnapshot>(damagedSnapshot()));
    harness.model->selectApp("app 250");
    show();
    const auto isInView = [this] {
        return table->viewport()->rect().contains(table->visualRect(table->currentIndex()));
    };
    ASSERT_GT(table->currentIndex().row(), 100) << "far below what is seen at first";
    EXPECT_TRUE(isInView());
    page->hide();
    harness.model->selectApp("app 0");
    page->show();
    QApplication::processEvents();
    EXPECT_LT(table->currentIndex().row(), 100);
    EXPECT_TRUE(isInView());
}

TEST_F(ApplicationsPageTest, givesEveryControlItsRoomWhereTheLetteringIsLarge) {
    const double base = Type::base();
    Type::setBase(26);
    harness.play(developer);
    QWidget window;
    ApplicationsPage large(harness.page, &window);
    large.setNarrow(true);
    window.show();
    const QWidget& bar = *named<QLineEdit>(large, "Filter Applications")->parentWidget();
    const auto layOut = [&](double width) {
        large.resize(Type::px(width), Type::px(300));
        for (int round = 0; round < 5; ++round)
            QApplication::processEvents();
    };
    layOut(380);
    const int inTwoRows = bar.height();
    auto parts = bar.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    parts.removeIf([](const QWidget* part) { return !part->isVisible(); });
    for (const QWidget* part : parts) {
        EXPECT_TRUE(bar.rect().contains(part->geometry())) << part->accessibleName().toStdString();
        for (const QWidget* other : parts)
            if (other != part) {
                EXPECT_FALSE(part->geometry().adjusted(0, 0, Type::px(8) - 1, 0).intersects(other->geometry()))
                    << part->accessibleName().toStdString() << " and " << other->accessibleName().toStdString();
            }
    }
    layOut(764);
    EXPECT_LT(bar.height(), inTwoRows) << "in one row, where there is the room";
    Type::setBase(base);
}

TEST_F(ApplicationsPageTest, giveTheDetailTheTablesPlaceWhereThereIsLittleRoom) {
    harness.play(developer);
    show(true);
    table->setFocus();
    QTest::keyClick(table, Qt::Key_Down);
    EXPECT_FALSE(detail->isVisible());
    QTest::keyClick(table, Qt::Key_Return);
    EXPECT_TRUE(detail->isVisible());
    EXPECT_FALSE(table->isVisible());
    button(*page, "Back to Applications")->click();
    EXPECT_FALSE(detail->isVisible());
    EXPECT_TRUE(table->isVisible());
    EXPECT_FALSE(harness.model->selectedAppKey());
}

TEST_F(ApplicationsPageTest, keepsTheHeadOfAnApplicationThatEnded) {
    harness.play(developer);
    show();
    const ApplicationSnapshot chosen = harness.state().snapshot->applications.front();
    harness.model->selectApp(chosen.key);
    auto* processes = named<QTableView>(*detail, "Processes");
    EXPECT_EQ(processes->model()->rowCount(), static_cast<int>(chosen.pids.size()));
    end(chosen.key);
    EXPECT_EQ(harness.model->selectedAppKey(), chosen.key);
    EXPECT_TRUE(says(text(chosen.name)));
    EXPECT_TRUE(says(QStringLiteral("Unavailable")));
    EXPECT_EQ(processes->model()->rowCount(), 0);
    EXPECT_FALSE(button(*detail, ("Reveal " + chosen.name).c_str())->isEnabled());
}

TEST_F(ApplicationsPageTest, offersNothingWhereNothingFilters) {
    harness.play(developer, 3);
    SystemSnapshot bare = *harness.state().snapshot;
    bare.applications.clear();
    bare.processes.clear();
    harness.take(std::make_shared<SystemSnapshot>(std::move(bare)));
    show();
    EXPECT_TRUE(says(QStringLiteral("Applications are unavailable on this computer.")));
    EXPECT_FALSE(says(QStringLiteral("0 applications")));
    const auto buttons = page->findChildren<QAbstractButton*>();
    EXPECT_TRUE(std::ranges::none_of(buttons, [](const QAbstractButton* one) {
        return one->isVisible() && one->text() == QStringLiteral("Clear Filter");
    }));
}

TEST_F(ApplicationsPageTest, asksTheHistoryOfWhatIsSelectedWhileItIsSeen) {
    harness.play(troubledDay, 60);
    for (std::size_t tick = 0; tick < 60; ++tick) {
        harness.model->history().ingest(recordedSnapshots(troubledDay)[tick]);
        harness.settle();
    }
    show();
    harness.model->selectApp(app("Lantern").key);
    harness.settle();
    EXPECT_TRUE(hasCharts());
    EXPECT_TRUE(says(QStringLiteral("CPU over 12 hours")));
    const QString note = QStringLiteral("History for this app builds up as Ostrivane runs.");
    EXPECT_FALSE(says(note));

    page->setWindowSeen(false);
    harness.model->selectApp("exe:never seen");
    harness.settle();
    page->setWindowSeen(true);
    harness.settle();
    EXPECT_FALSE(hasCharts());
    EXPECT_TRUE(says(note));
}

TEST_F(ApplicationsPageTest, leadsFromAProcessToItsPage) {
    harness.play(developer);
    show();
    harness.model->selectApp(harness.state().snapshot->applications.front().key);
    auto* processes = named<QTableView>(*detail, "Processes");
    const int pid = processes->model()->index(0, 1).data().toInt();
    processes->setCurrentIndex(processes->model()->index(0, 0));
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::overview);
    QTest::keyClick(processes, Qt::Key_Return);
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::processes);
    EXPECT_EQ(harness.model->selectedProcessPID(), pid);
}

TEST_F(ApplicationsPageTest, hasAMenuForEachRow) {
    harness.play(developer);
    show();
    const QPoint place = table->visualRect(table->model()->index(0, 0)).center();
    QContextMenuEvent asked(QContextMenuEvent::Mouse, place, table->viewport()->mapToGlobal(place));
    QApplication::sendEvent(table->viewport(), &asked);
    auto* menu = page->findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    QStringList entries;
    for (const QAction* action : menu->actions())
        entries << action->text();
    EXPECT_EQ(entries.front(), QStringLiteral("Show Details"));
    EXPECT_EQ(entries.back(), QStringLiteral("Copy Name"));
    EXPECT_TRUE(entries.contains(QStringLiteral("Show Processes")));
    menu->actions().back()->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), cell(0, 0));
    menu->close();
}

TEST_F(ApplicationsPageTest, withstandsAMachineThatCannotBeBelieved) {
    const double base = Type::base();
    Type::setBase(26);
    harness.take(std::make_shared<SystemSnapshot>(damagedSnapshot()));
    for (const bool narrow : {false, true}) {
        show(narrow);
        EXPECT_EQ(table->model()->rowCount(), 500);
        for (const int index : {0, 2, 7}) {
            harness.model->selectApp("app " + std::to_string(index));
            harness.settle();
            EXPECT_FALSE(page->grab().isNull());
        }
    }
    page.reset();
    Type::setBase(base);
}

} // namespace
} // namespace ostrivane
