#include "app/window/Sidebar.hpp"
#include "app/widgets/FilterField.hpp"
#include "app/window/SidebarModel.hpp"
#include "tests/app/pages/PageHarness.hpp"

#include <QListView>
#include <QTest>

#include <gtest/gtest.h>

#include <tuple>

namespace ostrivane {

namespace {

constexpr Date evening{1'700'000'000};
constexpr Date midnight{1'699'920'000};

SidebarValue valueOf(Page page, const AppState& state) {
    return sidebarValue(page, state, evening, midnight);
}

AppState stateWith(SystemSnapshot snapshot) {
    AppState state;
    state.snapshot = std::make_shared<SystemSnapshot>(std::move(snapshot));
    return state;
}

} // namespace

TEST(SidebarValue, saysNothingWhereNothingIsKnown) {
    const AppState state = stateWith(SystemSnapshot::empty(evening));
    for (const Page page : shortcutPages())
        EXPECT_EQ(valueOf(page, state), SidebarValue{}) << rawValue(page);
}

TEST(SidebarValue, cutsOffFreeSpaceAndTakesTheLargerDirection) {
    SystemSnapshot snapshot = SystemSnapshot::empty(evening);
    snapshot.disk.volumes = {{.name = "Root", .mountPoint = "/", .total = 1000, .available = 169, .isRoot = true}};
    snapshot.disk.readBytesPerSec = 1e6;
    snapshot.disk.writeBytesPerSec = 38e6;
    snapshot.network.inRate = 3.4e6;
    const AppState state = stateWith(snapshot);
    EXPECT_EQ(valueOf(Page::storage, state).text, QStringLiteral("16% free"));
    EXPECT_EQ(valueOf(Page::disk, state).text, QStringLiteral("38.0 MB/s"));
    EXPECT_EQ(valueOf(Page::network, state).text, QStringLiteral("3.4 MB/s"));
}

TEST(SidebarValue, countsTheAlertsOfTheDayThatWarn) {
    AppState state = stateWith(SystemSnapshot::empty(evening));
    const auto add = [&](AlertSeverity severity, double ago) {
        Alert alert;
        alert.severity = severity;
        alert.date = Date{evening.seconds - ago};
        state.alerts.push_back(alert);
    };
    add(AlertSeverity::info, 10);
    EXPECT_EQ(valueOf(Page::alerts, state), SidebarValue{});
    add(AlertSeverity::warning, 20);
    add(AlertSeverity::critical, 30);
    add(AlertSeverity::warning, evening.seconds - midnight.seconds + 1);
    EXPECT_EQ(valueOf(Page::alerts, state).text, QStringLiteral("2"));
    EXPECT_EQ(valueOf(Page::alerts, state).words, QStringLiteral("2 today"));
}

TEST(SidebarValue, showsTheWorstCondition) {
    AppState state = stateWith(SystemSnapshot::empty(evening));
    state.health = {{.id = "a", .status = HealthCategory::Status::elevated},
                    {.id = "b", .status = HealthCategory::Status::unknown},
                    {.id = "c", .status = HealthCategory::Status::good}};
    EXPECT_EQ(valueOf(Page::health, state).condition, Condition::elevated) << "what is not known is not worse";
    state.health[2].status = HealthCategory::Status::high;
    EXPECT_EQ(valueOf(Page::health, state).condition, Condition::high);
}

TEST(Sidebar, narrowsDownByTitleAndGoesToTheFirst) {
    PageHarness harness;
    harness.play(virtualMachine);
    Sidebar sidebar(*harness.model, PlatformWords::Linux, [&] { return harness.now; });
    std::optional<Page> chosen;
    QObject::connect(&sidebar, &Sidebar::pageChosen, &sidebar, [&](Page page) { chosen = page; });
    sidebar.resize(216, 600);
    sidebar.show();
    auto* search = sidebar.findChild<FilterField*>();
    auto* list = sidebar.findChildren<QListView*>().first();
    const int rows = list->model()->rowCount();
    EXPECT_EQ(rows, 21 + 5) << "pages without the settings, and five titles";

    for (const auto& [words, hits, page] :
         {std::tuple{"PROC", 1, Page::processes}, std::tuple{"sett", 0, Page::settings}}) {
        QTest::keyClicks(search, QString::fromLatin1(words));
        EXPECT_EQ(list->model()->rowCount(), hits) << words;
        QTest::keyClick(search, Qt::Key_Return);
        EXPECT_EQ(chosen, page) << words;
        EXPECT_EQ(list->model()->rowCount(), rows) << "the field is empty again";
    }

    QTest::keyClicks(search, QStringLiteral("no such page"));
    chosen.reset();
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_EQ(chosen, std::nullopt);
}

TEST(Sidebar, followsTheSelectionAndTellsTheValue) {
    PageHarness harness;
    harness.play(virtualMachine);
    Sidebar sidebar(*harness.model, PlatformWords::Linux, [&] { return harness.now; });
    sidebar.show();
    const auto lists = sidebar.findChildren<QListView*>();
    harness.model->select(Page::memory);
    EXPECT_EQ(lists[0]->currentIndex().data().toString(), QStringLiteral("Memory"));
    EXPECT_TRUE(
        lists[0]->currentIndex().data(Qt::AccessibleTextRole).toString().startsWith(QStringLiteral("Memory, ")));
    harness.model->select(Page::settings);
    EXPECT_FALSE(lists[0]->currentIndex().isValid());
    EXPECT_EQ(lists[1]->currentIndex().data().toString(), QStringLiteral("Settings"));
}

} // namespace ostrivane
