#pragma once

#include "cli/UsageTable.hpp"

#include <cstddef>
#include <optional>
#include <string>

namespace ostrivane::cli {

struct Key;

enum class WatchPage { overview, applications, processes, judgement };

/// How a person looks at one table.
struct TableView {
    UsageSort sort = UsageSort::cpu;
    std::string filter;
    std::string selected;  ///< `id` of a row; empty: none, the view stays at its place
    std::size_t place = 0; ///< of the selected row
    std::size_t top = 0;   ///< the first row shown
};

/// How a person reads a text that may be longer than the window.
struct TextView {
    std::size_t top = 0;   ///< the first line shown
    std::size_t lines = 0; ///< of the whole text
};

/// Where the live view stands. It changes by keys alone, and by `settled`.
struct WatchState {
    WatchPage page = WatchPage::overview;
    TableView applications;
    TableView processes;
    TextView reading;      ///< of the judgement
    bool isTyping = false; ///< the filter of the table shown

    /// What the page lists; absent on a page without a table.
    std::optional<UsageSubject> subject() const;
    /// That of the page; on a page without one, that of the applications.
    const TableView& table() const;
    TableView& table();
};

/// What else a key asks for.
enum class WatchAction { none, quit, refresh, repaint };

struct WatchStep {
    WatchState state;
    WatchAction action = WatchAction::none;
};

/// The state after a key, in a window of that height.
WatchStep handleKey(WatchState state, const Key& key, const SystemSnapshot& snapshot, int height);

/// The state for another snapshot or another window: the selection stays on what it is on, and in view. When that is
/// gone, what has come to its place is selected.
/// @param textLines  of the judgement, when that is shown
WatchState settled(WatchState state, const SystemSnapshot& snapshot, int height, std::size_t textLines = 0);

/// The rows of the table that is shown; none on a page without one.
std::vector<UsageRow> shownRows(const WatchState& state, const SystemSnapshot& snapshot);

/// How a page with a table uses its lines; beside these there is the footer. In a low window the rows stay longest.
struct TablePage {
    int header = 0; ///< lines of the machine and the pages, those at the end first
    bool heading = false;
    int rows = 0;
    bool status = false;
};
TablePage tablePage(int height);
constexpr int mostHeaderLines = 4;

/// The lines of text on the page with the judgement.
int readingRows(int height);

} // namespace ostrivane::cli
