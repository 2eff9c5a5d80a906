#pragma once

#include <QColor>

namespace ostrivane {

/// What a text is, for its colour.
enum class Tone { text, text2, text3, accent, onAccent, good, elevated, high, unknown };

/// What a line, an area or a bar stands for. `s1` processor, read, download; `s2` system, write, upload, swap, power;
/// `s3` graphics, efficiency cores; `s4` memory; `s5` temperature, pressure; `s6` power over days; `good` the battery.
enum class Series { s1, s2, s3, s4, s5, s6, good, neutral, cached, track };

/// A condition. Never shown by colour alone: each has a glyph of its own shape, and stands beside a word.
enum class Condition { good, elevated, high, unknown, info };

struct StatusColours {
    QColor text;
    QColor ground;
    QColor mark;
};

/// Every colour of the program; no other file names one.
struct Theme {
    bool isDark = false;
    QColor window;
    QColor sidebar;
    QColor card;
    QColor cardAlt;
    QColor border;
    QColor separator;
    QColor text;
    QColor text2;
    QColor text3;
    QColor track;
    QColor grid;
    QColor hover;
    QColor accent;
    QColor accentFill;
    QColor onAccent;
    QColor accentBg;
    QColor selection;
    QColor dangerFill;
    QColor onDanger;
    QColor tooltip;
    QColor onTooltip;
    QColor s1;
    QColor s2;
    QColor s3;
    QColor s4;
    QColor s5;
    QColor s6;
    QColor neutral;
    QColor cached;
    StatusColours good;
    StatusColours elevated;
    StatusColours high;
    StatusColours unknown;

    static const Theme& light();
    static const Theme& dark();

    /// The one in use. Main thread.
    static const Theme& current();
    /// Takes it into use, the application's palette included, so that every widget gets a change of palette.
    static void use(const Theme& theme);

    QColor colour(Tone tone) const;
    QColor colour(Series series) const;
    StatusColours colours(Condition condition) const;
};

} // namespace ostrivane
