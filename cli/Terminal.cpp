#include "cli/Terminal.hpp"

#include <langinfo.h>
#include <ncurses.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

/// Of <term.h>, which defines words such as `lines` as macros.
extern "C" char* tigetstr(const char* capability);

namespace ostrivane::cli {

namespace {

/// How the terminal's cursor is placed; null when it cannot be.
const char* cursorPlacing() {
    const char* how = tigetstr("cup");
    // -1 is what it answers for a word that is no capability.
    return reinterpret_cast<std::intptr_t>(how) == -1 ? nullptr : how;
}

struct KeySequence {
    const char* sequence;
    int code;
};
/// What the terminal library does not expect: the marks around what is pasted, and keys as terminals send them that
/// pass over the wish for its own set of sequences.
// Of a window that is drawn on: larger ones take memory and time for nothing that anybody could read.
constexpr int mostRows = 512;
constexpr int mostColumns = 1024;
constexpr KeySequence furtherKeys[] = {{"\x1b[200~", KeyDecoder::pasteBegin},
                                       {"\x1b[201~", KeyDecoder::pasteEnd},
                                       {"\x1b[A", KEY_UP},
                                       {"\x1b[B", KEY_DOWN},
                                       {"\x1b[H", KEY_HOME},
                                       {"\x1b[F", KEY_END},
                                       {"\x1b[1~", KEY_HOME},
                                       {"\x1b[4~", KEY_END}};

/// Not a capability that the terminal library knows: terminals of this family do it or pass it over.
void askForPasteMarks(bool wanted) {
    std::fputs(wanted ? "\x1b[?2004h" : "\x1b[?2004l", stdout);
    std::fflush(stdout);
}

/// The view draws with characters that only UTF-8 has. Where the user's locale has none (a bare shell over SSH), the
/// terminal itself mostly does.
void useUTF8() {
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        std::setlocale(LC_CTYPE, "C.UTF-8");
}

bool wantsNoColour() {
    const char* wish = std::getenv("NO_COLOR");
    return wish && *wish != '\0';
}

enum Pair : short { accentPair = 1, goodPair, warningPair, criticalPair };

attr_t attributes(Style style, bool colours) {
    const auto pair = [colours](Pair number) { return colours ? static_cast<attr_t>(COLOR_PAIR(number)) : A_NORMAL; };
    switch (style) {
    case Style::plain:
        return A_NORMAL;
    case Style::dim:
        return A_DIM;
    case Style::bold:
        return A_BOLD;
    case Style::accent:
        return A_BOLD | pair(accentPair);
    case Style::good:
        return pair(goodPair);
    case Style::warning:
        return pair(warningPair);
    case Style::critical:
        return A_BOLD | pair(criticalPair);
    case Style::selected:
        return A_REVERSE;
    }
    return A_NORMAL;
}

} // namespace

Terminal::~Terminal() {
    if (!screen)
        return;
    if (marksPastes)
        askForPasteMarks(false);
    endwin();
    delscreen(static_cast<SCREEN*>(screen));
}

std::optional<std::string> Terminal::open() {
    if (!isatty(STDIN_FILENO) || !isatty(STDOUT_FILENO))
        return "the live view needs a terminal; \"ostrivanectl snapshot\" prints the figures without one";
    useUTF8();
    // Not initscr(), which ends the program when it does not know the terminal.
    SCREEN* made = newterm(nullptr, stdout, stdin);
    if (!made)
        return "this terminal cannot be drawn on; is TERM set?";
    screen = made;
    set_term(made);
    const char* placing = cursorPlacing();
    if (!placing)
        return "this terminal cannot place its cursor; \"ostrivanectl snapshot\" prints the figures without that";
    cbreak();
    noecho();
    nonl();
    keypad(stdscr, TRUE);
    nodelay(stdscr, TRUE);
    set_escdelay(25);
    if (std::strncmp(placing, "\x1b[", 2) == 0) {
        for (const auto& [sequence, code] : furtherKeys)
            define_key(sequence, code);
        askForPasteMarks(true);
        marksPastes = true;
    }
    curs_set(0);
    if (!wantsNoColour() && has_colors()) {
        colours = true;
        start_color();
        use_default_colors();
        init_pair(accentPair, COLOR_CYAN, -1);
        init_pair(goodPair, COLOR_GREEN, -1);
        init_pair(warningPair, COLOR_YELLOW, -1);
        init_pair(criticalPair, COLOR_RED, -1);
    }
    return std::nullopt;
}

Terminal::Size Terminal::size() const {
    return {std::min(COLS, mostColumns), std::min(LINES, mostRows)};
}

void Terminal::resized() {
    winsize window{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_row > 0 && window.ws_col > 0)
        resizeterm(std::min<int>(window.ws_row, mostRows), std::min<int>(window.ws_col, mostColumns));
    clearok(stdscr, TRUE); // terminals rearrange what stood on them
}

void Terminal::draw(const std::vector<StyledLine>& lines) {
    erase();
    for (std::size_t row = 0; row < lines.size(); ++row) {
        move(static_cast<int>(row), 0);
        for (const Span& span : lines[row]) {
            attrset(static_cast<int>(attributes(span.style, colours)));
            addstr(span.text.c_str());
        }
    }
    attrset(A_NORMAL);
    refresh();
}

std::optional<Key> Terminal::key() {
    for (int typed = getch(); typed != ERR; typed = getch())
        if (auto key = decoder.take(typed))
            return key;
    return std::nullopt;
}

} // namespace ostrivane::cli
