#include "app/pages/HistoryPage.hpp"

#include "app/pages/MomentReadout.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/HistoryChart.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/TextLabel.hpp"
#include "tests/TimeZone.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QFileDialog>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <algorithm>

namespace ostrivane {
namespace {

class HistoryPageTest : public ::testing::Test {
protected:
    /// Lives through the troubled day up to that minute of it, and keeps its history.
    void live(int minutes) {
        SharedSnapshot last;
        for (const SharedSnapshot& snapshot : recordedSnapshots(troubledDay)) {
            if (snapshot->timestamp > dateAt(minutes))
                break;
            last = snapshot;
            harness.now = snapshot->timestamp;
            harness.model->history().ingest(snapshot);
            harness.settle();
        }
        harness.take(last);
    }
    void open() {
        page.emplace(harness.page);
        harness.show(*page);
    }
    void chooseRange(Qt::Key key) {
        QTest::keyClick(named<SegmentedControl>(*page, "Range"), key);
        harness.settle();
    }
    void exportTo(const std::string& file) {
        button(*page, "Export the history of this range")->click();
        auto* dialog = page->findChild<QFileDialog*>();
        ASSERT_NE(dialog, nullptr);
        Q_EMIT dialog->fileSelected(text(file));
        dialog->close();
        QCoreApplication::sendPostedEvents(dialog, QEvent::DeferredDelete);
        harness.settle();
        QThreadPool::globalInstance()->waitForDone();
        harness.settle();
    }

    static Date dateAt(int minutes) { return recordedSnapshots(troubledDay).front()->timestamp + minutes * 60.0; }
    /// The application that works most at that minute of the day.
    static QString busiestAt(int minutes) {
        const auto& day = recordedSnapshots(troubledDay);
        const auto then = std::ranges::lower_bound(day, dateAt(minutes), {},
                                                   [](const SharedSnapshot& snapshot) { return snapshot->timestamp; });
        return text(std::ranges::max_element((*then)->applications, {}, &ApplicationSnapshot::cpu)->name);
    }

    HistoryChart& chart(const char* name) { return *named<HistoryChart>(*page, name); }
    TableView& busiest() { return *named<TableView>(*page, "Busiest applications"); }
    QString cell(int row, int column) { return busiest().model()->index(row, column).data().toString(); }
    const MomentReadout& readout() {
        const auto widgets = page->findChildren<QWidget*>();
        return dynamic_cast<MomentReadout&>(**std::ranges::find_if(
            widgets, [](const QWidget* widget) { return dynamic_cast<const MomentReadout*>(widget) != nullptr; }));
    }
    /// Waits until the read-out tells that: the page asks for it once the cursor has stood still.
    bool comesToTell(const QString& words) {
        constexpr int patience = 30'000;
        const auto tells = [&] {
            harness.settle();
            return readout().isVisible() && readout().accessibleDescription().contains(words);
        };
        return QTest::qWaitFor(tells, patience);
    }
    bool says(const char* words) {
        return std::ranges::any_of(page->findChildren<TextLabel*>(), [&](const TextLabel* label) {
            return label->isVisible() && label->text() == QString::fromUtf8(words);
        });
    }
    /// Whether a message is shown that begins so.
    bool hasBanner(const char* words) {
        return std::ranges::any_of(page->findChildren<Banner*>(), [&](const Banner* banner) {
            return banner->isVisible() && banner->accessibleLabel().startsWith(QString::fromUtf8(words));
        });
    }

    const TimeZone zone{"UTC0"};
    PageHarness harness;
    std::optional<HistoryPage> page;
};

constexpr int whileCompiling = 9 * 60 + 6;

TEST_F(HistoryPageTest, fillsStripsAndTableFromTheRangeThatIsChosen) {
    live(9 * 60 + 30);
    open();
    EXPECT_TRUE(chart("CPU, history").isVisible());
    EXPECT_TRUE(chart("CPU, history").description().contains(QStringLiteral("last 24 hours")));
    EXPECT_TRUE(chart("CPU, history").description().contains(QStringLiteral("highest 81%")));
    EXPECT_FALSE(chart("GPU, history").isVisible()) << "nobody measured it";
    EXPECT_EQ(cell(0, 0), QStringLiteral("Lantern")) << "which works little, but always";

    chooseRange(Qt::Key_Left);
    chooseRange(Qt::Key_Left);
    EXPECT_TRUE(chart("CPU, history").description().contains(QStringLiteral("last hour")));
    EXPECT_EQ(cell(0, 0), busiestAt(whileCompiling));
}

TEST_F(HistoryPageTest, tellsAtTheCursorWhatRan) {
    live(whileCompiling);
    open();
    EXPECT_FALSE(readout().isVisible());
    HistoryChart& cpu = chart("CPU, history");
    QTest::keyClick(&cpu, Qt::Key_End);
    EXPECT_TRUE(comesToTell(QStringLiteral("Busiest applications: ") + busiestAt(whileCompiling)));
    const QString told = readout().accessibleDescription();
    EXPECT_TRUE(told.startsWith(QStringLiteral("Today, 09:05. CPU 81%."))) << told.toStdString();
    EXPECT_EQ(chart("Memory, history").cursor(), cpu.cursor()) << "there is one cursor over all strips";
    QTest::keyClick(&cpu, Qt::Key_Home);
    EXPECT_TRUE(comesToTell(QStringLiteral("Busiest applications: Lantern")));
    EXPECT_TRUE(readout().accessibleDescription().startsWith(QStringLiteral("Today, 00:01.")));
    QTest::keyClick(&cpu, Qt::Key_Escape);
    EXPECT_FALSE(readout().isVisible());
}

TEST_F(HistoryPageTest, asksAfterItsSleepForWhatItHadNoAnswerTo) {
    live(whileCompiling);
    open();
    QTest::keyClick(&chart("CPU, history"), Qt::Key_End);
    page->setWindowSeen(false); // before the cursor has stood still
    EXPECT_FALSE(readout().isVisible());
    page->setWindowSeen(true);
    EXPECT_TRUE(comesToTell(QStringLiteral("Busiest applications: ") + busiestAt(whileCompiling)));
}

TEST_F(HistoryPageTest, opensAnApplicationOfTheTable) {
    live(30);
    open();
    busiest().setCurrentIndex(busiest().model()->index(0, 0));
    QTest::keyClick(&busiest(), Qt::Key_Return);
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::applications);
    ASSERT_TRUE(harness.model->selectedAppKey());
    EXPECT_EQ(text(harness.state().appName(*harness.model->selectedAppKey())), cell(0, 0));
}

TEST_F(HistoryPageTest, writesTheRangeToAFileAndSaysHowItWent) {
    live(90);
    open();
    chooseRange(Qt::Key_Left);
    chooseRange(Qt::Key_Left);
    const std::string file = harness.folder.file("day.csv");
    exportTo(file);
    EXPECT_TRUE(hasBanner("Exported 60 rows to day.csv"));
    const std::string written = contentOf(file);
    EXPECT_EQ(std::ranges::count(written, '\n'), 61) << "with a head";
    exportTo(harness.folder.file("missing/day.csv"));
    EXPECT_TRUE(hasBanner("The history could not be exported."));
}

TEST_F(HistoryPageTest, saysWhatIsMissing) {
    open();
    EXPECT_TRUE(says("History builds up as Ostrivane runs."));
    EXPECT_FALSE(chart("CPU, history").isVisible());
    live(30);
    chooseRange(Qt::Key_Left);
    EXPECT_FALSE(says("History builds up as Ostrivane runs."));
    EXPECT_TRUE(chart("CPU, history").isVisible());

    harness.now = harness.now + 2 * 3600; // it was off
    chooseRange(Qt::Key_Left);
    EXPECT_TRUE(says("Nothing was recorded in the last 1 hour."));
    EXPECT_TRUE(says("No application was recorded in the last 1 hour."));
    EXPECT_FALSE(chart("CPU, history").isVisible());
    EXPECT_FALSE(hasBanner(""));
}

TEST_F(HistoryPageTest, tellsWhyThereIsNoHistory) {
    harness.path = harness.folder.file("missing/history.sqlite");
    harness.open();
    open();
    EXPECT_TRUE(hasBanner("The history cannot be read."));
    EXPECT_FALSE(says("History builds up as Ostrivane runs."));
}

} // namespace
} // namespace ostrivane
