#include "app/pages/CPUPage.hpp"
#include "app/pages/GPUPage.hpp"
#include "app/pages/MemoryPage.hpp"
#include "app/pages/RangePicker.hpp"
#include "app/pages/ResourceChart.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/HistoryChart.hpp"
#include "app/widgets/LiveChart.hpp"
#include "app/widgets/RowsModel.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/Type.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace ostrivane {
namespace {

/// The only one of its kind in a page that can be seen; null where there is none.
template <class Widget>
Widget* seen(const QWidget& page) {
    for (QWidget* child : page.findChildren<QWidget*>())
        if (auto* found = dynamic_cast<Widget*>(child); found && found->isVisible())
            return found;
    return nullptr;
}

void pickRange(const QWidget& page, int index) {
    auto* control = page.findChild<RangePicker*>()->findChild<SegmentedControl*>();
    ASSERT_NE(control, nullptr);
    control->setIndex(index);
    Q_EMIT control->indexChosen(index);
}

/// A machine with a graphics processor that tells all.
SystemSnapshot withGraphics(Date time) {
    SystemSnapshot snapshot = *recordedSnapshots(developer).back();
    snapshot.timestamp = time;
    snapshot.gpu.utilization = 0.24;
    snapshot.gpu.rendererUtilization = 0.21;
    snapshot.gpu.memoryInUse = 3'000'000'000;
    snapshot.thermal.gpuTemperature = 61;
    for (ApplicationSnapshot& app : snapshot.applications)
        app.gpu = app.cpu / 10;
    return snapshot;
}

TEST(CPUPageTest, ListsTheBusiestAndOpensThem) {
    PageHarness harness;
    harness.play(developer);
    CPUPage page(harness.page);
    harness.show(page);
    auto* table = seen<TableView>(page);
    ASSERT_NE(table, nullptr);
    const RowsModelBase& rows = *table->rows();
    ASSERT_GT(rows.rowCount(), 8);
    EXPECT_EQ(rows.column(rows.sortColumn()).id, "cpu");
    EXPECT_EQ(rows.sortOrder(), Qt::DescendingOrder);

    const SystemSnapshot& snapshot = *harness.state().snapshot;
    const auto busiest = std::ranges::max_element(snapshot.processes, {}, &ProcessSnapshot::cpu);
    EXPECT_EQ(rows.cell(0, 0).text.toStdString(), busiest->name);
    Q_EMIT table->rowActivated(0);
    EXPECT_EQ(harness.model->selectedProcessPID(), busiest->pid);
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::processes);
}

TEST(CPUPageTest, TakesTheChoiceOfApplications) {
    PageHarness harness;
    harness.play(developer);
    CPUPage page(harness.page);
    harness.show(page);
    auto controls = page.findChildren<SegmentedControl*>();
    for (SegmentedControl* control : controls)
        if (control->choices().contains(QStringLiteral("Applications"))) {
            control->setIndex(1);
            Q_EMIT control->indexChosen(1);
        }
    auto* table = seen<TableView>(page);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(static_cast<std::size_t>(table->rows()->rowCount()), harness.state().snapshot->applications.size());
    Q_EMIT table->rowActivated(0);
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::applications);
    ASSERT_TRUE(harness.model->selectedAppKey());
    EXPECT_NE(harness.state().app(harness.model->selectedAppKey()), nullptr);
}

TEST(ResourcePageTest, ChartsFollowThePickedRange) {
    PageHarness harness;
    harness.play(troubledDay, 100);
    for (std::size_t tick = 0; tick < 100; ++tick)
        harness.model->history().ingest(recordedSnapshots(troubledDay)[tick]);
    CPUPage page(harness.page);
    harness.show(page);
    EXPECT_NE(seen<LiveChart>(page), nullptr);
    EXPECT_EQ(seen<HistoryChart>(page), nullptr);
    pickRange(page, 1);
    harness.settle();
    EXPECT_EQ(seen<LiveChart>(page), nullptr);
    EXPECT_NE(seen<HistoryChart>(page), nullptr);
    pickRange(page, 0);
    EXPECT_NE(seen<LiveChart>(page), nullptr);
}

TEST(ResourcePageTest, SaysSoWhileThereIsTooLittleHistory) {
    PageHarness harness;
    harness.play(developer, 3);
    MemoryPage page(harness.page);
    harness.show(page);
    pickRange(page, 5);
    harness.settle();
    EXPECT_EQ(seen<HistoryChart>(page), nullptr);
    EXPECT_NE(seen<EmptyState>(page), nullptr);
    EXPECT_EQ(seen<Banner>(page), nullptr);
}

TEST(ResourcePageTest, TellsWhyThereIsNoHistory) {
    PageHarness harness;
    harness.path = harness.folder.file("missing/history.sqlite");
    harness.open();
    harness.play(developer, 3);
    CPUPage page(harness.page);
    harness.show(page);
    EXPECT_EQ(seen<Banner>(page), nullptr) << "the live view needs none";
    pickRange(page, 2);
    harness.settle();
    EXPECT_NE(seen<Banner>(page), nullptr);
    pickRange(page, 0);
    harness.settle();
    EXPECT_EQ(seen<Banner>(page), nullptr);
}

TEST(GPUPageTest, IsEmptyWithoutFigures) {
    PageHarness harness;
    harness.play(developer);
    GPUPage page(harness.page);
    harness.show(page);
    EXPECT_EQ(seen<ResourceChart>(page), nullptr);
    EXPECT_NE(seen<EmptyState>(page), nullptr);
    EXPECT_EQ(seen<RangePicker>(page), nullptr);

    harness.take(std::make_shared<SystemSnapshot>(withGraphics(harness.now + 2)));
    EXPECT_NE(seen<ResourceChart>(page), nullptr);
    EXPECT_EQ(seen<EmptyState>(page), nullptr);
    auto* table = seen<TableView>(page);
    ASSERT_NE(table, nullptr);
    EXPECT_GT(table->rows()->rowCount(), 0);
}

TEST(ResourcePageTest, StandsEverything) {
    for (const double base : {13.0, 26.0}) {
        Type::setBase(base);
        for (const bool isNarrow : {false, true}) {
            PageHarness harness;
            CPUPage cpu(harness.page);
            MemoryPage memory(harness.page);
            GPUPage gpu(harness.page);
            for (PageView* page :
                 {static_cast<PageView*>(&cpu), static_cast<PageView*>(&memory), static_cast<PageView*>(&gpu)}) {
                harness.show(*page, isNarrow);
                EXPECT_FALSE(page->grab().isNull()) << "before the first sample";
            }
            harness.take(std::make_shared<SystemSnapshot>(damagedSnapshot()));
            harness.take(std::make_shared<SystemSnapshot>(damagedSnapshot()));
            for (PageView* page :
                 {static_cast<PageView*>(&cpu), static_cast<PageView*>(&memory), static_cast<PageView*>(&gpu)}) {
                EXPECT_FALSE(page->grab().isNull());
                if (base == 13.0)
                    expectNothingCutOff(*page);
            }
        }
    }
    Type::setBase(13);
}

} // namespace
} // namespace ostrivane
