#include "app/pages/ProcessesPage.hpp"

#include "app/pages/ProcessPanelView.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/FilterField.hpp"
#include "app/widgets/RowsModel.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"
#include "tests/app/pages/PageHarness.hpp"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace ostrivane {
namespace {

class ProcessesPageTest : public ::testing::Test {
protected:
    void show() {
        harness.show(page);
        QEvent leaves(QEvent::Leave); // wherever the pointer is
        QApplication::sendEvent(&table, &leaves);
    }
    int rowCount() const { return table.rows()->rowCount(); }
    QString cell(int row, int column) const { return table.rows()->cell(row, column).text; }
    std::int32_t pid(int row) const { return cell(row, 1).toInt(); }
    int rowOf(std::int32_t wanted) const {
        for (int row = 0; row < rowCount(); ++row)
            if (pid(row) == wanted)
                return row;
        return -1;
    }
    bool shows(const QString& words) const {
        const auto labels = page.findChildren<QWidget*>();
        return std::ranges::any_of(labels, [&](QWidget* widget) {
            const auto* label = dynamic_cast<TextLabel*>(widget);
            return label && label->isVisible() && label->text() == words;
        });
    }
    template <class Widget>
    Widget& child() const {
        return *page.findChild<Widget*>();
    }
    QPushButton& reveal() const { return *child<ProcessPanelView>().findChild<QPushButton*>(); }
    const SystemSnapshot& snapshot() const { return *harness.state().snapshot; }
    const ProcessSnapshot& selectedProcess() const {
        return *std::ranges::find(snapshot().processes, *harness.model->selectedProcessPID(), &ProcessSnapshot::pid);
    }
    /// One of the user's own whose parent is listed too.
    const ProcessSnapshot& someChild() const {
        return *std::ranges::find_if(snapshot().processes, [this](const ProcessSnapshot& process) {
            return process.commandLine && process.path && parentOf(snapshot(), process);
        });
    }
    QMenu* menuOf(int row) {
        table.scrollTo(table.model()->index(row, 0));
        const QPoint place = table.visualRect(table.model()->index(row, 0)).center();
        QContextMenuEvent asks(QContextMenuEvent::Mouse, place, table.viewport()->mapToGlobal(place));
        QApplication::sendEvent(table.viewport(), &asks);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    static void choose(QMenu* menu, const QString& title) {
        const auto actions = menu->actions();
        const auto entry = std::ranges::find(actions, title, &QAction::text);
        ASSERT_NE(entry, actions.end()) << title.toStdString();
        (*entry)->trigger();
        menu->close();
    }

    PageHarness harness;
    ProcessesPage page{harness.page};
    TableView& table = child<TableView>();
};

TEST_F(ProcessesPageTest, MeasuresFirstAndThenListsTheBusiestAtTheTop) {
    show();
    EXPECT_TRUE(shows(QStringLiteral("Measuring…")));
    harness.play(developer);
    EXPECT_FALSE(shows(QStringLiteral("Measuring…")));
    ASSERT_EQ(rowCount(), static_cast<int>(snapshot().processes.size()));
    const auto busiest = std::ranges::max_element(snapshot().processes, {}, &ProcessSnapshot::cpu);
    EXPECT_EQ(pid(0), busiest->pid);
    EXPECT_TRUE(shows(runningText(snapshot())));
    EXPECT_FALSE(child<ProcessPanelView>().isVisible());
}

TEST_F(ProcessesPageTest, FiltersAndClears) {
    harness.play(developer);
    show();
    FilterField& filter = child<FilterField>();
    EXPECT_EQ(page.filterField(), &filter);
    const int all = rowCount();
    filter.setText(QString::number(pid(3)));
    EXPECT_GE(rowCount(), 1);
    EXPECT_LT(rowCount(), all);
    filter.setText(QStringLiteral("no such process"));
    EXPECT_TRUE(shows(QStringLiteral("No matches.")));
    Q_EMIT child<EmptyState>().actionTriggered();
    EXPECT_TRUE(filter.text().isEmpty());
    EXPECT_EQ(rowCount(), all);
    EXPECT_FALSE(shows(QStringLiteral("No matches.")));
    EXPECT_FALSE(filter.findChild<IconButton*>()->isVisible()) << "nothing is left to clear";

    SegmentedControl& scope = child<SegmentedControl>();
    EXPECT_EQ(scope.choices(),
              (QStringList{QStringLiteral("All"), QStringLiteral("Mine"), QStringLiteral("Developer")}));
    scope.setFocus();
    QTest::keyClick(&scope, Qt::Key_Right);
    QTest::keyClick(&scope, Qt::Key_Right);
    EXPECT_EQ(rowCount(), std::ranges::count_if(snapshot().processes, &ProcessSnapshot::isDevProcess));
    harness.take(recordedSnapshots(developer).front());
    EXPECT_LT(rowCount(), all) << "the next reading is filtered as well";
}

TEST_F(ProcessesPageTest, SharesItsSelectionWithTheModel) {
    harness.play(developer, 5);
    show();
    const std::int32_t chosen = someChild().pid;
    table.selectRow(rowOf(chosen));
    EXPECT_EQ(harness.model->selectedProcessPID(), chosen);
    EXPECT_TRUE(child<ProcessPanelView>().isVisible());
    EXPECT_TRUE(shows(presentProcess(selectedProcess(), snapshot(), "").facts));

    child<FilterField>().setText(QStringLiteral("nothing"));
    EXPECT_EQ(harness.model->selectedProcessPID(), chosen) << "out of sight, still selected";
    child<FilterField>().clear();
    EXPECT_EQ(pid(table.selectedRow()), chosen);

    EXPECT_TRUE(page.closeDetail());
    EXPECT_EQ(table.selectedRow(), -1);
    EXPECT_FALSE(child<ProcessPanelView>().isVisible());
    EXPECT_FALSE(page.closeDetail());

    // Another page leads here.
    page.hide();
    child<FilterField>().setText(QStringLiteral("nothing"));
    harness.model->selectProcess(chosen);
    show();
    EXPECT_EQ(pid(table.selectedRow()), chosen);
}

TEST_F(ProcessesPageTest, BringsIntoViewWhatAnotherPageLeadsTo) {
    harness.play(developer);
    show();
    const std::int32_t busiest = pid(0);
    const std::int32_t idlest = pid(rowCount() - 1);
    const auto isInView = [](const TableView& shown) {
        QApplication::processEvents();
        return shown.viewport()->rect().contains(shown.visualRect(shown.currentIndex()));
    };
    harness.model->selectProcess(idlest);
    EXPECT_TRUE(isInView(table)) << "and not behind the panel";
    page.hide();
    harness.model->selectProcess(busiest);
    show();
    EXPECT_TRUE(isInView(table));

    page.hide();
    harness.model->selectProcess(idlest);
    ProcessesPage firstVisit(harness.page);
    harness.show(firstVisit);
    const auto& fresh = *firstVisit.findChild<TableView*>();
    ASSERT_GT(fresh.verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(fresh.currentIndex().row(), rowCount() - 1);
    EXPECT_TRUE(isInView(fresh));
}

TEST_F(ProcessesPageTest, ShowsAProcessThatTheLatestSnapshotDoesNotHaveYet) {
    harness.play(developer, 5);
    show();
    const SharedSnapshot whole = harness.state().snapshot;
    const std::int32_t other = pid(0);
    const std::int32_t chosen = pid(1);
    table.selectRow(0);
    child<FilterField>().setText(QString::number(other));
    ASSERT_EQ(rowOf(chosen), -1);
    page.hide();
    SystemSnapshot trimmed = *whole; // as while no window was seen
    std::erase_if(trimmed.processes, [&](const ProcessSnapshot& process) { return process.pid == chosen; });
    harness.take(std::make_shared<SystemSnapshot>(std::move(trimmed)));
    harness.model->selectProcess(chosen);
    show();
    EXPECT_TRUE(child<FilterField>().text().isEmpty());
    EXPECT_EQ(table.selectedRow(), -1);
    harness.take(whole);
    EXPECT_EQ(harness.model->selectedProcessPID(), chosen);
    ASSERT_GE(table.selectedRow(), 0);
    EXPECT_EQ(pid(table.selectedRow()), chosen);
    EXPECT_TRUE(child<ProcessPanelView>().isVisible());
}

TEST_F(ProcessesPageTest, KeepsTheSelectionOfAProcessThatEndsWhileTheOrderIsHeld) {
    harness.play(developer, 5);
    show();
    const std::int32_t chosen = someChild().pid;
    table.selectRow(rowOf(chosen));
    QEvent enters(QEvent::Enter);
    QApplication::sendEvent(&table, &enters);
    EXPECT_TRUE(shows(QStringLiteral("Order held while the pointer is over the list")));
    SystemSnapshot without = snapshot();
    std::erase_if(without.processes, [&](const ProcessSnapshot& process) { return process.pid == chosen; });
    harness.take(std::make_shared<SystemSnapshot>(std::move(without)));
    EXPECT_TRUE(table.rows()->isGone(rowOf(chosen)));
    EXPECT_TRUE(shows(QStringLiteral("PID %1 · Ended").arg(chosen)));
    EXPECT_FALSE(reveal().isVisible()) << "nothing can be done with it any more";

    QEvent leaves(QEvent::Leave);
    QApplication::sendEvent(&table, &leaves);
    EXPECT_EQ(rowOf(chosen), -1);
    EXPECT_FALSE(harness.model->selectedProcessPID());
    EXPECT_FALSE(child<ProcessPanelView>().isVisible());
    EXPECT_FALSE(shows(QStringLiteral("Order held while the pointer is over the list")));
}

TEST_F(ProcessesPageTest, OffersWhatCanBeDoneWithARow) {
    harness.play(developer, 5);
    show();
    const ProcessSnapshot process = someChild();
    const std::int32_t parent = process.ppid;
    choose(menuOf(rowOf(process.pid)), QStringLiteral("Copy PID"));
    EXPECT_EQ(QApplication::clipboard()->text(), QString::number(process.pid));
    choose(menuOf(rowOf(process.pid)), QStringLiteral("Copy Command Line"));
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), *process.commandLine);
    choose(menuOf(rowOf(process.pid)), QStringLiteral("Reveal"));
    EXPECT_EQ(harness.revealed, (std::vector<std::string>{*process.path}));
    choose(menuOf(rowOf(process.pid)), QStringLiteral("Show Application"));
    EXPECT_EQ(harness.model->selectedAppKey(), process.appKey);
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::applications);
    choose(menuOf(rowOf(process.pid)), QStringLiteral("Show Parent"));
    EXPECT_EQ(harness.model->selectedProcessPID(), parent);
    EXPECT_EQ(pid(table.selectedRow()), parent);
    reveal().click();
    EXPECT_EQ(harness.revealed.size(), selectedProcess().path ? 2U : 1U);
}

TEST_F(ProcessesPageTest, WithstandsADayAndADamagedMachineAtDoubleLettering) {
    const QAbstractItemModelTester tester(table.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    show();
    harness.play(developer, 5);
    EXPECT_GT(rowCount(), 0);
    harness.play(laptop, 3);
    harness.play(troubledDay, 20);
    harness.apply(damagedSnapshot());
    EXPECT_EQ(rowCount(), static_cast<int>(snapshot().processes.size()));
    for (const bool narrow : {false, true})
        for (int row = 0; row < 12; ++row) {
            table.selectRow(row);
            harness.show(page, narrow);
            EXPECT_FALSE(page.grab().isNull());
        }
    Type::setBase(26);
    ProcessesPage large(harness.page);
    harness.show(large, true);
    EXPECT_FALSE(large.grab().isNull());
    Type::setBase(13);
}

} // namespace
} // namespace ostrivane
