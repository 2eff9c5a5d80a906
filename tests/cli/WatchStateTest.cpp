#include "cli/WatchState.hpp"

#include "cli/Key.hpp"
#include "cli/WatchJudgement.hpp"
#include "cli/WatchView.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace ostrivane::cli {
namespace {

/// A machine with that many processes, the first one the busiest.
SystemSnapshot machine(int processes) {
    SystemSnapshot snapshot = SystemSnapshot::empty(Date{0});
    snapshot.interval = 1;
    for (int index = 1; index <= processes; ++index) {
        ProcessSnapshot& process = snapshot.processes.emplace_back();
        process.pid = index;
        process.name = "worker " + std::to_string(index) + (index % 10 == 0 ? " 日本" : "");
        process.cpu = processes - index;
    }
    snapshot.applications.resize(2);
    snapshot.applications[0].key = snapshot.applications[0].name = "editor";
    snapshot.applications[1].key = snapshot.applications[1].name = "browser";
    return snapshot;
}

/// The live view, driven by keys.
struct Driven {
    SystemSnapshot snapshot = machine(100);
    int height = 24;
    WatchState state;
    WatchAction action = WatchAction::none;

    explicit Driven(WatchPage page = WatchPage::processes) { state.page = page; }

    void press(const Key& key) {
        WatchStep step = handleKey(state, key, snapshot, height);
        state = settled(std::move(step.state), snapshot, height);
        action = step.action;
    }
    void press(Key::Name name) { press(Key{.name = name}); }
    void type(std::string_view text, bool isPasted = false) {
        for (const char c : text)
            press({.name = Key::Name::text, .text = std::string(1, c), .isPasted = isPasted});
    }
    const TableView& table() const { return state.table(); }
    std::string text(int width = 80) const {
        std::string out;
        for (const StyledLine& line :
             presentWatch(snapshot, state, {.source = "Live", .remark = "", .width = width, .height = height}))
            out += plainText(line) + "\n";
        return out;
    }
    bool showsSelected() const {
        const auto rows = static_cast<std::size_t>(tablePage(height).rows);
        return table().top <= table().place && table().place < table().top + rows;
    }
};

TEST(WatchState, turnsPagesAndActs) {
    Driven watch(WatchPage::overview);
    for (const WatchPage page :
         {WatchPage::applications, WatchPage::processes, WatchPage::judgement, WatchPage::overview}) {
        watch.press(Key::Name::tab);
        EXPECT_EQ(watch.state.page, page);
    }
    watch.press(Key::Name::backTab);
    EXPECT_EQ(watch.state.page, WatchPage::judgement);
    watch.type("r");
    EXPECT_EQ(watch.action, WatchAction::refresh);
    watch.press(Key::Name::repaint);
    EXPECT_EQ(watch.action, WatchAction::repaint);
    watch.type("q", true);
    EXPECT_EQ(watch.action, WatchAction::none) << "pasted text is no command";
    watch.type("q");
    EXPECT_EQ(watch.action, WatchAction::quit);
    Driven overview(WatchPage::overview);
    overview.type("s/j");
    EXPECT_FALSE(overview.state.isTyping);
    EXPECT_EQ(overview.table().sort, UsageSort::cpu);
}

TEST(WatchState, movesTheSelectionWithinTheRows) {
    Driven watch;
    const auto rows = static_cast<std::size_t>(tablePage(watch.height).rows);
    watch.press(Key::Name::down);
    EXPECT_EQ(watch.table().selected, "1");
    watch.type("jj");
    EXPECT_EQ(watch.table().selected, "3");
    watch.press(Key::Name::pageDown);
    EXPECT_EQ(watch.table().place, 2 + rows);
    EXPECT_TRUE(watch.showsSelected());
    watch.press(Key::Name::end);
    EXPECT_EQ(watch.table().selected, "100");
    watch.press(Key::Name::down);
    EXPECT_EQ(watch.table().selected, "100");
    EXPECT_EQ(watch.table().top, 100 - rows);
    watch.press(Key::Name::pageUp);
    watch.type("k");
    EXPECT_EQ(watch.table().place, 98 - rows);
    EXPECT_TRUE(watch.showsSelected());
    watch.press(Key::Name::home);
    EXPECT_EQ(watch.table().selected, "1");
    EXPECT_EQ(watch.table().top, 0u);
    watch.snapshot.processes.clear();
    for (const Key::Name key : {Key::Name::down, Key::Name::end, Key::Name::pageUp})
        watch.press(key);
    EXPECT_NE(watch.text().find("Unavailable"), std::string::npos);
}

TEST(WatchState, staysOnTheSelectedProcess) {
    Driven watch;
    watch.press(Key::Name::down);
    watch.press(Key::Name::down);
    watch.snapshot.processes[1].cpu = -1; // the idlest now
    watch.state = settled(watch.state, watch.snapshot, watch.height);
    EXPECT_EQ(watch.table().selected, "2");
    EXPECT_EQ(watch.table().place, 99u);
    EXPECT_TRUE(watch.showsSelected());
    for (const int height : {5, 1, 60}) {
        watch.height = height;
        watch.state = settled(watch.state, watch.snapshot, height);
        EXPECT_TRUE(watch.showsSelected() || tablePage(height).rows == 0) << height;
    }
    watch.type("sss"); // by traffic, which nobody has any of
    EXPECT_EQ(watch.table().selected, "2");
    std::erase_if(watch.snapshot.processes, [](const ProcessSnapshot& process) { return process.pid == 2; });
    watch.state = settled(watch.state, watch.snapshot, watch.height);
    EXPECT_FALSE(watch.table().selected.empty()) << "what came to its place";
    watch.press(Key::Name::escape);
    EXPECT_TRUE(watch.table().selected.empty());
    EXPECT_EQ(watch.table().top, 0u);
}

TEST(WatchState, staysAtTheTopWithoutASelection) {
    Driven watch;
    watch.snapshot.processes[0].cpu = -1;
    watch.state = settled(watch.state, watch.snapshot, watch.height);
    EXPECT_EQ(watch.table().top, 0u);
    EXPECT_TRUE(watch.table().selected.empty());
}

TEST(WatchState, cyclesTheOrderOfEachTable) {
    Driven watch;
    for (const auto& [order, name] : rawTexts(EnumTag<UsageSort>{})) {
        EXPECT_EQ(watch.table().sort, order);
        EXPECT_NE(watch.text().find("sort: " + std::string(name)), std::string::npos);
        watch.type("s");
    }
    EXPECT_EQ(watch.table().sort, UsageSort::cpu);
    watch.type("s");
    EXPECT_EQ(watch.state.applications.sort, UsageSort::cpu);
}

TEST(WatchState, filtersWhileItIsTyped) {
    Driven watch;
    watch.type("/WORKER 9q");
    EXPECT_TRUE(watch.state.isTyping);
    EXPECT_EQ(watch.action, WatchAction::none) << "a letter is no command now";
    EXPECT_NE(watch.text().find("Nothing matches"), std::string::npos);
    EXPECT_NE(watch.text().find("Filter: WORKER 9q▏"), std::string::npos);
    watch.press(Key::Name::backspace);
    EXPECT_EQ(shownRows(watch.state, watch.snapshot).size(), 11u);
    watch.press(Key::Name::enter);
    EXPECT_FALSE(watch.state.isTyping);
    EXPECT_NE(watch.text().find("filter: WORKER 9"), std::string::npos);
    EXPECT_NE(watch.text().find("; 11 shown"), std::string::npos);
    watch.press(Key::Name::down);
    EXPECT_EQ(watch.table().selected, "9");
    watch.press(Key::Name::escape);
    EXPECT_EQ(watch.table().filter, "");
    EXPECT_EQ(watch.table().selected, "9") << "one step back at a time";
}

TEST(WatchState, typesWideAndPastedText) {
    Driven watch;
    watch.type("/");
    for (const char* character : {"日", "本", "x"})
        watch.press({.name = Key::Name::text, .text = character});
    watch.press(Key::Name::backspace);
    EXPECT_EQ(shownRows(watch.state, watch.snapshot).size(), 10u);
    watch.press(Key::Name::backspace);
    EXPECT_EQ(watch.table().filter, "日");
    watch.press(Key::Name::backspace);
    watch.press(Key::Name::backspace);
    EXPECT_EQ(watch.table().filter, "");
    watch.type(std::string(1000, 'p') + "q", true);
    EXPECT_LT(watch.table().filter.size(), 600u);
    EXPECT_TRUE(watch.state.isTyping);
    for (const int width : {1, 10, 80})
        EXPECT_NO_THROW(watch.text(width));
    watch.press(Key::Name::escape);
    EXPECT_EQ(watch.table().filter, "");
    EXPECT_FALSE(watch.state.isTyping);
}

TEST(WatchState, tableFitsEveryWindow) {
    Driven watch;
    watch.snapshot.processes[3].name = "a\x1b[2J\n" + std::string(300, 'w');
    watch.snapshot.processes[3].commandLine = "x\x1b[2J";
    watch.snapshot.processes[3].isRestricted = true;
    for (int moves = 0; moves < 4; ++moves)
        watch.press(Key::Name::down);
    for (const WatchPage page : {WatchPage::applications, WatchPage::processes})
        for (const bool isTyping : {false, true})
            for (const int width : {1, 7, 20, 80, 250})
                for (const int height : {1, 2, 3, 5, 8, 24, 150}) {
                    watch.state.page = page;
                    watch.state.isTyping = isTyping;
                    watch.height = height;
                    watch.state = settled(watch.state, watch.snapshot, height);
                    const auto lines = presentWatch(watch.snapshot, watch.state,
                                                    {.source = "Live", .remark = "", .width = width, .height = height});
                    ASSERT_EQ(lines.size(), static_cast<std::size_t>(height));
                    for (const StyledLine& line : lines) {
                        ASSERT_LE(columns(line), width) << plainText(line);
                        ASSERT_EQ(plainText(line).find_first_of("\x1b\n"), std::string::npos);
                    }
                    const auto selected = std::ranges::count_if(lines, [](const StyledLine& line) {
                        return !line.empty() && line.front().style == Style::selected;
                    });
                    ASSERT_EQ(selected, page == WatchPage::processes && height > 1 ? 1 : 0) << height;
                }
}

TEST(WatchState, tableShowsTheMachineAboveAndTheSelectionBelow) {
    Driven watch;
    const std::string text = watch.text();
    for (const char* part :
         {"CPU  ", "Memory", "[Processes]", " Applications ", "PID", "100 processes", "Tab judgement", "/ filter"})
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
    watch.snapshot.processes[0].user = "ada";
    watch.snapshot.processes[0].path = "/usr/bin/worker";
    watch.press(Key::Name::down);
    EXPECT_NE(watch.text().find("1 ada: /usr/bin/worker"), std::string::npos);
    watch.press(Key::Name::tab);
    EXPECT_NE(watch.text().find("Tab overview"), std::string::npos);
}

WatchJudgement longJudgement() {
    WatchJudgement judgement{.summary = "CPU needs attention"};
    for (int index = 0; index < 20; ++index)
        judgement.health.push_back({.id = "x",
                                    .name = "Category " + std::to_string(index) + "\x1b[2J",
                                    .status = HealthCategory::Status::high,
                                    .label = "High",
                                    .evidence = {"A sentence that says why, and takes some room to say it in full."}});
    judgement.alerts.push_back({.title = "The last line", .body = {}});
    return judgement;
}

TEST(WatchState, scrollsTheJudgementToItsEndAndNoFurther) {
    WatchState state{.page = WatchPage::judgement};
    const SystemSnapshot snapshot = machine(1);
    WatchFrame frame{.source = "Live", .judgement = longJudgement(), .width = 60, .height = 24};
    const auto shown = [&] {
        state = settled(state, snapshot, frame.height, judgementLines(frame.judgement, frame.width).size());
        std::string text;
        for (const StyledLine& line : presentWatch(snapshot, state, frame))
            text += plainText(line) + "\n";
        return text;
    };
    const auto press = [&](Key::Name name) { state = handleKey(state, {.name = name}, snapshot, frame.height).state; };
    EXPECT_NE(shown().find("[!!] high      Category 0␛[2J: High"), std::string::npos) << shown();
    EXPECT_NE(shown().find("[Judgement]"), std::string::npos);
    for (int pages = 0; pages < 20; ++pages)
        press(Key::Name::pageDown);
    const std::string end = shown();
    EXPECT_NE(end.find("The last line"), std::string::npos) << end;
    press(Key::Name::down);
    EXPECT_EQ(shown(), end);
    press(Key::Name::up);
    EXPECT_NE(shown(), end) << "one key back is one line back";
    frame.height = 200;
    EXPECT_NE(shown().find("CPU needs attention"), std::string::npos) << "a window in which all of it fits";
    for (const int width : {1, 7, 20, 250})
        for (const int height : {1, 2, 3, 5, 8, 24}) {
            frame.width = width;
            frame.height = height;
            shown();
            const auto lines = presentWatch(snapshot, state, frame);
            ASSERT_EQ(lines.size(), static_cast<std::size_t>(height));
            for (const StyledLine& line : lines)
                ASSERT_LE(columns(line), width) << plainText(line);
        }
}

TEST(WatchState, theOverviewSaysWhatAllOfItComesTo) {
    Driven watch(WatchPage::overview);
    EXPECT_EQ(watch.text().find("Health"), std::string::npos) << "nothing was judged";
    const auto lines = presentWatch(watch.snapshot, watch.state, {.judgement = longJudgement()});
    EXPECT_EQ(plainText(lines[2]), "Health    CPU needs attention");
}

} // namespace
} // namespace ostrivane::cli
