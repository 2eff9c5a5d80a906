#include "cli/WatchState.hpp"

#include "cli/Key.hpp"

#include <algorithm>
#include <utility>

namespace ostrivane::cli {

namespace {

constexpr std::size_t longestFilter = 512; // bytes; a whole file may be pasted

void eraseLastCharacter(std::string& text) {
    while (!text.empty()) {
        const auto last = static_cast<unsigned char>(text.back());
        text.pop_back();
        if ((last & 0xC0) != 0x80) // the first byte of a character
            return;
    }
}

std::size_t placeOfSelected(const TableView& table, const std::vector<UsageRow>& rows) {
    const auto found = std::ranges::find(rows, table.selected, &UsageRow::id);
    return found != rows.end() ? static_cast<std::size_t>(found - rows.begin())
                               : std::min(table.place, rows.size() - 1);
}

/// Moves the selection by that many rows. Without one, the first row shown counts as the next.
void moveBy(TableView& table, long rows, const std::vector<UsageRow>& shown) {
    if (shown.empty())
        return;
    table.place = placeOfSelected(table, shown);
    const auto from = static_cast<long>(table.selected.empty() ? table.top : table.place);
    const long step = table.selected.empty() && rows > 0 ? rows - 1 : rows;
    table.place = static_cast<std::size_t>(std::clamp(from + step, 0L, static_cast<long>(shown.size()) - 1));
    table.selected = shown[table.place].id;
}

/// The rows by which the key moves, on a page of that many rows and with `farthest` in all; absent for another key.
std::optional<long> moveOf(const Key& key, bool isTyping, int pageRows, std::size_t farthest) {
    const bool isLetter = key.name == Key::Name::text && !isTyping;
    const long page = std::max(pageRows, 1);
    if (key.name == Key::Name::up || (isLetter && key.text == "k"))
        return -1;
    if (key.name == Key::Name::down || (isLetter && key.text == "j"))
        return 1;
    if (key.name == Key::Name::pageUp)
        return -page;
    if (key.name == Key::Name::pageDown)
        return page;
    if (key.name == Key::Name::home)
        return -static_cast<long>(farthest);
    if (key.name == Key::Name::end)
        return static_cast<long>(farthest);
    return std::nullopt;
}

/// The last line that can be the first one shown.
std::size_t lowestTop(const TextView& reading, int height) {
    const auto room = static_cast<std::size_t>(std::max(readingRows(height), 1));
    return reading.lines - std::min(reading.lines, room);
}

/// Whether the key moves the selection, or the text.
bool handleMove(WatchState& state, const Key& key, const SystemSnapshot& snapshot, int height) {
    if (state.page == WatchPage::judgement) {
        const auto lines = moveOf(key, false, readingRows(height), state.reading.lines);
        if (lines)
            state.reading.top =
                static_cast<std::size_t>(std::clamp(static_cast<long>(state.reading.top) + *lines, 0L,
                                                    static_cast<long>(lowestTop(state.reading, height))));
        return lines.has_value();
    }
    if (!state.subject())
        return false;
    const auto rows =
        moveOf(key, state.isTyping, tablePage(height).rows, snapshot.processes.size() + snapshot.applications.size());
    if (rows)
        moveBy(state.table(), *rows, shownRows(state, snapshot));
    return rows.has_value();
}

void handleTyping(WatchState& state, const Key& key) {
    std::string& filter = state.table().filter;
    if (key.name == Key::Name::text && filter.size() + key.text.size() <= longestFilter)
        filter += key.text;
    else if (key.name == Key::Name::backspace)
        eraseLastCharacter(filter);
    else if (key.name == Key::Name::escape)
        filter.clear();
    if (key.name == Key::Name::enter || key.name == Key::Name::escape)
        state.isTyping = false;
}

void turnPage(WatchState& state, int pages) {
    constexpr int count = 4;
    state.page = static_cast<WatchPage>((static_cast<int>(state.page) + count + pages) % count);
}

void sortNext(TableView& table) {
    constexpr auto orders = rawTexts(EnumTag<UsageSort>{});
    const auto* const now = std::ranges::find(orders, table.sort, &RawText<UsageSort>::first);
    table.sort = (now == orders.end() || now + 1 == orders.end() ? orders.begin() : now + 1)->first;
}

/// One step back: the filter goes first, then the selection.
void goBack(TableView& table) {
    if (!table.filter.empty()) {
        table.filter.clear();
    } else {
        table.selected.clear();
        table.top = 0;
    }
}

WatchAction handleCommand(WatchState& state, const Key& key) {
    if (key.name == Key::Name::repaint)
        return WatchAction::repaint;
    if (key.name == Key::Name::tab)
        turnPage(state, 1);
    else if (key.name == Key::Name::backTab)
        turnPage(state, -1);
    else if (key.name == Key::Name::escape && state.subject())
        goBack(state.table());
    if (key.name != Key::Name::text)
        return WatchAction::none;
    if (key.text == "q" || key.text == "Q")
        return WatchAction::quit;
    if (key.text == "r" || key.text == "R")
        return WatchAction::refresh;
    if (key.text == "s" && state.subject())
        sortNext(state.table());
    if (key.text == "/" && state.subject())
        state.isTyping = true;
    return WatchAction::none;
}

} // namespace

std::optional<UsageSubject> WatchState::subject() const {
    switch (page) {
    case WatchPage::overview:
    case WatchPage::judgement:
        return std::nullopt;
    case WatchPage::applications:
        return UsageSubject::applications;
    case WatchPage::processes:
        return UsageSubject::processes;
    }
    return std::nullopt;
}

const TableView& WatchState::table() const {
    return page == WatchPage::processes ? processes : applications;
}

TableView& WatchState::table() {
    return page == WatchPage::processes ? processes : applications;
}

WatchStep handleKey(WatchState state, const Key& key, const SystemSnapshot& snapshot, int height) {
    WatchAction action = WatchAction::none;
    if (key.isPasted && !state.isTyping)
        return {std::move(state), action};
    if (!handleMove(state, key, snapshot, height)) {
        if (state.isTyping && key.name != Key::Name::repaint)
            handleTyping(state, key);
        else
            action = handleCommand(state, key);
    }
    return {std::move(state), action};
}

WatchState settled(WatchState state, const SystemSnapshot& snapshot, int height, std::size_t textLines) {
    state.reading.lines = textLines;
    state.reading.top = std::min(state.reading.top, lowestTop(state.reading, height));
    const std::vector<UsageRow> rows = shownRows(state, snapshot);
    TableView& table = state.table();
    if (!state.subject() || rows.empty())
        return state;
    const auto visible = static_cast<std::size_t>(std::max(tablePage(height).rows, 1));
    table.top = std::min(table.top, rows.size() - std::min(rows.size(), visible));
    if (table.selected.empty())
        return state;
    table.place = placeOfSelected(table, rows);
    table.selected = rows[table.place].id;
    table.top = std::clamp(table.top, table.place + 1 - std::min(table.place + 1, visible), table.place);
    return state;
}

std::vector<UsageRow> shownRows(const WatchState& state, const SystemSnapshot& snapshot) {
    const auto subject = state.subject();
    if (!subject)
        return {};
    return usageRows(snapshot, *subject, {.sort = state.table().sort, .filter = state.table().filter});
}

int readingRows(int height) {
    return std::max(height - 1 - tablePage(height).header, 0); // the footer follows
}

TablePage tablePage(int height) {
    constexpr int leastRows = 3;
    TablePage page;
    int left = std::max(height, 1) - 1;
    page.heading = left >= 2;
    left -= page.heading ? 1 : 0;
    page.status = left > leastRows;
    left -= page.status ? 1 : 0;
    page.header = std::clamp(left - leastRows, 0, mostHeaderLines);
    page.rows = left - page.header;
    return page;
}

} // namespace ostrivane::cli
