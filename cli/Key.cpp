#include "cli/Key.hpp"

#include "core/model/Text.hpp"

#include <ncurses.h>

#include <utility>

namespace ostrivane::cli {

namespace {

Key::Name nameOf(int code) {
    switch (code) {
    case KEY_UP:
        return Key::Name::up;
    case KEY_DOWN:
        return Key::Name::down;
    case KEY_PPAGE:
        return Key::Name::pageUp;
    case KEY_NPAGE:
        return Key::Name::pageDown;
    case KEY_HOME:
        return Key::Name::home;
    case KEY_END:
        return Key::Name::end;
    case KEY_BTAB:
        return Key::Name::backTab;
    case KEY_ENTER:
        return Key::Name::enter;
    case KEY_BACKSPACE:
        return Key::Name::backspace;
    default:
        return Key::Name::other;
    }
}

Key::Name nameOfControl(unsigned char byte) {
    switch (byte) {
    case '\t':
        return Key::Name::tab;
    case '\r':
    case '\n':
        return Key::Name::enter;
    case '\f':
        return Key::Name::repaint;
    case '\b':
    case 0x7F:
        return Key::Name::backspace;
    case 0x1B:
        return Key::Name::escape;
    default:
        return Key::Name::other;
    }
}

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

/// Bytes of the character that `lead` begins; 0 for a byte that begins none.
std::size_t sizeAfter(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

} // namespace

std::optional<Key> KeyDecoder::take(int code) {
    constexpr int lastByte = 0xFF;
    if (code < 0 || code > lastByte) {
        pending.clear();
        if (code == pasteBegin || code == pasteEnd)
            isPasting = code == pasteBegin;
        return Key{.name = nameOf(code), .isPasted = isPasting};
    }
    const auto byte = static_cast<unsigned char>(code);
    if (!isContinuation(byte))
        pending.clear(); // what was there is never completed
    if (byte < 0x80)
        return plain(byte);
    pending += static_cast<char>(byte);
    const std::size_t whole = sizeAfter(static_cast<unsigned char>(pending.front()));
    if (pending.size() < whole)
        return std::nullopt;
    std::string text = std::exchange(pending, {});
    if (whole == 0 || Text::repaired(text) != text)
        return Key{.isPasted = isPasting};
    return Key{.name = Key::Name::text, .text = std::move(text), .isPasted = isPasting};
}

Key KeyDecoder::plain(unsigned char byte) const {
    if (byte >= ' ' && byte < 0x7F)
        return {.name = Key::Name::text, .text = std::string(1, static_cast<char>(byte)), .isPasted = isPasting};
    const Key::Name name = nameOfControl(byte);
    if (!isPasting)
        return {.name = name};
    const bool isBlank = name == Key::Name::enter || name == Key::Name::tab;
    return isBlank ? Key{.name = Key::Name::text, .text = " ", .isPasted = true} : Key{.isPasted = true};
}

} // namespace ostrivane::cli
