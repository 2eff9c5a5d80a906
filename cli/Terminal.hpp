#pragma once

#include "cli/Key.hpp"
#include "cli/StyledText.hpp"

#include <optional>
#include <string>

namespace ostrivane::cli {

/// The terminal in full-screen mode. It is given back as it was found when the object goes.
class Terminal {
public:
    Terminal() = default;
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// Takes the terminal over. Answers what keeps it from that, in the user's words; absent when all is well.
    std::optional<std::string> open();

    struct Size {
        int width = 80;
        int height = 24;
    };
    Size size() const;

    /// The window of the terminal has another size now.
    void resized();

    void draw(const std::vector<StyledLine>& lines);

    /// The next key that was typed; absent when there is none.
    std::optional<Key> key();

private:
    void* screen = nullptr; ///< of ncurses
    bool colours = false;
    bool marksPastes = false; ///< the terminal was asked to put marks around what is pasted
    KeyDecoder decoder;
};

} // namespace ostrivane::cli
