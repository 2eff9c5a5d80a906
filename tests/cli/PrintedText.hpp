#pragma once

#include "core/model/Text.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace ostrivane::cli {

inline bool holds(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

/// No line is wider than that, and nothing commands the terminal.
inline void expectWithin(const std::string& text, int width) {
    for (const std::string_view line : Text::lines(text))
        EXPECT_LE(Text::columns(line), width) << line;
    EXPECT_EQ(text.find('\x1b'), std::string::npos) << text;
}

} // namespace ostrivane::cli
