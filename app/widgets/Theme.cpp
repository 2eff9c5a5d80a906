#include "app/widgets/Theme.hpp"

#include <QGuiApplication>
#include <QPalette>

namespace ostrivane {

namespace {

const Theme lightTheme{
    .isDark = false,
    .window = QColor(0xf3, 0xf4, 0xf6),
    .sidebar = QColor(0xeb, 0xed, 0xf0),
    .card = QColor(0xff, 0xff, 0xff),
    .cardAlt = QColor(0xf7, 0xf8, 0xfa),
    .border = QColor(0xda, 0xdd, 0xe2),
    .separator = QColor(0xe8, 0xea, 0xed),
    .text = QColor(0x1a, 0x1d, 0x21),
    .text2 = QColor(0x4f, 0x57, 0x62),
    .text3 = QColor(0x60, 0x68, 0x73),
    .track = QColor(0xe6, 0xe9, 0xed),
    .grid = QColor(0xec, 0xee, 0xf1),
    .hover = QColor(0xf0, 0xf2, 0xf5),
    .accent = QColor(0x1d, 0x5b, 0xc9),
    .accentFill = QColor(0x24, 0x61, 0xcf),
    .onAccent = QColor(0xff, 0xff, 0xff),
    .accentBg = QColor(0xe4, 0xed, 0xfc),
    .selection = QColor(0xdc, 0xe8, 0xfb),
    .dangerFill = QColor(0xc2, 0x2e, 0x25),
    .onDanger = QColor(0xff, 0xff, 0xff),
    .tooltip = QColor(0x22, 0x26, 0x2b),
    .onTooltip = QColor(0xf4, 0xf5, 0xf7),
    .s1 = QColor(0x2b, 0x66, 0xd9),
    .s2 = QColor(0xd9, 0x74, 0x00),
    .s3 = QColor(0x00, 0xa0, 0x96),
    .s4 = QColor(0x64, 0x2a, 0x7a),
    .s5 = QColor(0xb5, 0x30, 0x4a),
    .s6 = QColor(0x3e, 0x4e, 0x06),
    .neutral = QColor(0x75, 0x80, 0x8f),
    .cached = QColor(0xb9, 0xc6, 0xdc),
    .good = {QColor(0x13, 0x6c, 0x42), QColor(0xdf, 0xf3, 0xe7), QColor(0x1e, 0x9a, 0x5c)},
    .elevated = {QColor(0x83, 0x50, 0x00), QColor(0xfb, 0xef, 0xd3), QColor(0xc4, 0x7f, 0x06)},
    .high = {QColor(0xae, 0x22, 0x19), QColor(0xfb, 0xe4, 0xe2), QColor(0xbc, 0x2a, 0x20)},
    .unknown = {QColor(0x58, 0x60, 0x6b), QColor(0xe9, 0xeb, 0xee), QColor(0x85, 0x8d, 0x98)},
};

const Theme darkTheme{
    .isDark = true,
    .window = QColor(0x14, 0x16, 0x1a),
    .sidebar = QColor(0x19, 0x1c, 0x20),
    .card = QColor(0x1f, 0x23, 0x28),
    .cardAlt = QColor(0x26, 0x2a, 0x30),
    .border = QColor(0x34, 0x3a, 0x42),
    .separator = QColor(0x2c, 0x31, 0x38),
    .text = QColor(0xe9, 0xeb, 0xee),
    .text2 = QColor(0xb4, 0xbb, 0xc5),
    .text3 = QColor(0x9d, 0xa5, 0xb1),
    .track = QColor(0x2f, 0x34, 0x3b),
    .grid = QColor(0x2a, 0x2f, 0x36),
    .hover = QColor(0x29, 0x2e, 0x34),
    .accent = QColor(0x86, 0xae, 0xff),
    .accentFill = QColor(0x34, 0x68, 0xd4),
    .onAccent = QColor(0xff, 0xff, 0xff),
    .accentBg = QColor(0x1f, 0x31, 0x54),
    .selection = QColor(0x26, 0x3d, 0x66),
    .dangerFill = QColor(0xc0, 0x36, 0x2d),
    .onDanger = QColor(0xff, 0xff, 0xff),
    .tooltip = QColor(0xed, 0xef, 0xf2),
    .onTooltip = QColor(0x1a, 0x1d, 0x21),
    .s1 = QColor(0x6c, 0x9d, 0xff),
    .s2 = QColor(0xf2, 0x9d, 0x38),
    .s3 = QColor(0x74, 0xe0, 0xb8),
    .s4 = QColor(0xe9, 0xc8, 0xf5),
    .s5 = QColor(0xcb, 0x53, 0x91),
    .s6 = QColor(0x85, 0x8c, 0x4a),
    .neutral = QColor(0x97, 0xa1, 0xaf),
    .cached = QColor(0x4a, 0x55, 0x68),
    .good = {QColor(0x5c, 0xcb, 0x92), QColor(0x18, 0x36, 0x26), QColor(0x3d, 0xb8, 0x7a)},
    .elevated = {QColor(0xeb, 0xb4, 0x4f), QColor(0x3b, 0x2e, 0x12), QColor(0xdd, 0xa0, 0x32)},
    .high = {QColor(0xff, 0x93, 0x89), QColor(0x46, 0x21, 0x1f), QColor(0xf0, 0x63, 0x58)},
    .unknown = {QColor(0xab, 0xb3, 0xbe), QColor(0x2e, 0x33, 0x3a), QColor(0x86, 0x8e, 0x99)},
};

const Theme* chosen = &lightTheme;

} // namespace

const Theme& Theme::light() {
    return lightTheme;
}

const Theme& Theme::dark() {
    return darkTheme;
}

const Theme& Theme::current() {
    return *chosen;
}

void Theme::use(const Theme& theme) {
    chosen = &theme;
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, const QColor& colour, const QColor& disabled) {
        palette.setColor(role, colour);
        palette.setColor(QPalette::Disabled, role, disabled);
    };
    set(QPalette::Window, theme.window, theme.window);
    set(QPalette::WindowText, theme.text, theme.text3);
    set(QPalette::Base, theme.card, theme.card);
    set(QPalette::AlternateBase, theme.cardAlt, theme.cardAlt);
    set(QPalette::Text, theme.text, theme.text3);
    set(QPalette::PlaceholderText, theme.text3, theme.text3);
    set(QPalette::Button, theme.card, theme.card);
    set(QPalette::ButtonText, theme.text, theme.text3);
    set(QPalette::BrightText, theme.onAccent, theme.onAccent);
    set(QPalette::Highlight, theme.selection, theme.track);
    set(QPalette::HighlightedText, theme.text, theme.text3);
    set(QPalette::Link, theme.accent, theme.text3);
    set(QPalette::LinkVisited, theme.accent, theme.text3);
    set(QPalette::ToolTipBase, theme.tooltip, theme.tooltip);
    set(QPalette::ToolTipText, theme.onTooltip, theme.onTooltip);
    set(QPalette::Light, theme.card, theme.card);
    set(QPalette::Midlight, theme.hover, theme.hover);
    set(QPalette::Mid, theme.border, theme.border);
    set(QPalette::Dark, theme.separator, theme.separator);
    set(QPalette::Shadow, theme.border, theme.border);
    QGuiApplication::setPalette(palette); // and every widget hears of it
}

QColor Theme::colour(Tone tone) const {
    switch (tone) {
    case Tone::text:
        return text;
    case Tone::text2:
        return text2;
    case Tone::text3:
        return text3;
    case Tone::accent:
        return accent;
    case Tone::onAccent:
        return onAccent;
    case Tone::good:
        return good.text;
    case Tone::elevated:
        return elevated.text;
    case Tone::high:
        return high.text;
    case Tone::unknown:
        return unknown.text;
    }
    return text;
}

QColor Theme::colour(Series series) const {
    switch (series) {
    case Series::s1:
        return s1;
    case Series::s2:
        return s2;
    case Series::s3:
        return s3;
    case Series::s4:
        return s4;
    case Series::s5:
        return s5;
    case Series::s6:
        return s6;
    case Series::good:
        return good.mark;
    case Series::neutral:
        return neutral;
    case Series::cached:
        return cached;
    case Series::track:
        return track;
    }
    return neutral;
}

StatusColours Theme::colours(Condition condition) const {
    switch (condition) {
    case Condition::good:
        return good;
    case Condition::elevated:
        return elevated;
    case Condition::high:
        return high;
    case Condition::unknown:
        return unknown;
    case Condition::info:
        return {accent, accentBg, accentFill};
    }
    return unknown;
}

} // namespace ostrivane
