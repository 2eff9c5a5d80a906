#include "cli/Key.hpp"

#include <gtest/gtest.h>

#include <ncurses.h>

#include <vector>

namespace ostrivane::cli {
namespace {

std::vector<Key> decoded(const std::vector<int>& codes) {
    KeyDecoder decoder;
    std::vector<Key> keys;
    for (const int code : codes)
        if (auto key = decoder.take(code))
            keys.push_back(*std::move(key));
    return keys;
}

Key text(const char* character, bool isPasted = false) {
    return {.name = Key::Name::text, .text = character, .isPasted = isPasted};
}

using Keys = std::vector<Key>;

TEST(Key, isAWholeCharacter) {
    EXPECT_EQ(decoded({'a', 0xC3, 0xA9, 0xE6, 0x97, 0xA5, 0xF0, 0x9F, 0x98, 0x80}),
              (Keys{text("a"), text("é"), text("日"), text("😀")}));
    EXPECT_EQ(decoded({0xE6, 0x97, 'q'}), (Keys{text("q")})) << "what was cut off takes no other key with it";
    EXPECT_EQ(decoded({0xE6, KEY_UP, 0x97}), (Keys{{.name = Key::Name::up}, {}}));
    EXPECT_EQ(decoded({0xFF, 0xED, 0xA0, 0x80, 0xC0, 'x'}), (Keys{{}, {}, {}, text("x")})) << "no UTF-8";
}

TEST(Key, isNamed) {
    EXPECT_EQ(decoded({'\r', 0x1B, 0x7F, KEY_BACKSPACE, '\t', '\f', KEY_NPAGE, KEY_F(5), 0}),
              (Keys{{.name = Key::Name::enter},
                    {.name = Key::Name::escape},
                    {.name = Key::Name::backspace},
                    {.name = Key::Name::backspace},
                    {.name = Key::Name::tab},
                    {.name = Key::Name::repaint},
                    {.name = Key::Name::pageDown},
                    {},
                    {}}));
}

TEST(Key, isNoCommandWhenItWasPasted) {
    const Keys keys = decoded({KeyDecoder::pasteBegin, 'q', '\r', 0x1B, 0xC3, 0xA9, KeyDecoder::pasteEnd, 'q'});
    EXPECT_EQ(
        keys,
        (Keys{
            {.isPasted = true}, text("q", true), text(" ", true), {.isPasted = true}, text("é", true), {}, text("q")}));
}

} // namespace
} // namespace ostrivane::cli
