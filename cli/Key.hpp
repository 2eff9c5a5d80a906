#pragma once

#include <optional>
#include <string>

namespace ostrivane::cli {

/// A key that was typed, or a character that was pasted.
struct Key {
    enum class Name {
        text, ///< a character
        enter,
        escape,
        backspace,
        tab,
        backTab,
        up,
        down,
        pageUp,
        pageDown,
        home,
        end,
        repaint, ///< Ctrl-L
        other    ///< one that means nothing here
    };
    Name name = Name::other;
    std::string text;      ///< the character, valid UTF-8
    bool isPasted = false; ///< no command, whatever it is

    friend bool operator==(const Key&, const Key&) = default;
};

/// Makes keys of the codes that the terminal library delivers: bytes, and numbers for keys that send several.
class KeyDecoder {
public:
    /// What the terminal library is to deliver for the marks around pasted text; beyond its own numbers.
    static constexpr int pasteBegin = 3000;
    static constexpr int pasteEnd = 3001;

    /// Absent until a character is whole.
    std::optional<Key> take(int code);

private:
    Key plain(unsigned char byte) const;

    std::string pending; ///< bytes of a character that is not whole yet
    bool isPasting = false;
};

} // namespace ostrivane::cli
