#include "core/model/Text.hpp"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <limits>
#include <random>

namespace ostrivane {

namespace {

using Parts = std::vector<std::string_view>;
using namespace std::string_view_literals;

} // namespace

TEST(Text, splitsLinesAndWords) {
    EXPECT_EQ(Text::lines(""), Parts{});
    EXPECT_EQ(Text::lines("\n"), Parts{""});
    EXPECT_EQ(Text::lines("a\n\nb"), (Parts{"a", "", "b"}));
    EXPECT_EQ(Text::lines("a b\nc\n"), (Parts{"a b", "c"}));
    EXPECT_EQ(Text::lines("a\0b\nc"sv), (Parts{"a\0b"sv, "c"}));
    EXPECT_EQ(Text::words(""), Parts{});
    EXPECT_EQ(Text::words(" \t "), Parts{});
    EXPECT_EQ(Text::words("one"), Parts{"one"});
    EXPECT_EQ(Text::words("  cpu0 \t 1  2 "), (Parts{"cpu0", "1", "2"}));
    EXPECT_EQ(Text::trimmed(" \t\r\n"), "");
    EXPECT_EQ(Text::trimmed("\t a b \r\n"), "a b");
}

TEST(Text, readsWholeNumbersThatFit) {
    EXPECT_EQ(Text::number<std::uint64_t>("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(Text::number<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(Text::number<int>("007"), 7);
    for (const char* text :
         {"", "-", "+5", " 5", "5 ", "0x10", "1e3", "5.0", "5,000", "٥", "18446744073709551616", "-1"})
        EXPECT_FALSE(Text::number<std::uint64_t>(text)) << text;
    for (const char* text : {"128", "-129"})
        EXPECT_FALSE(Text::number<std::int8_t>(text)) << text;
}

TEST(Text, readsFractionsWithAPointInEveryLanguage) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // where it is installed
    EXPECT_EQ(Text::number<double>("0.5"), 0.5);
    EXPECT_EQ(Text::number<double>("-12.5e-1"), -1.25);
    EXPECT_EQ(Text::number<double>("3"), 3);
    EXPECT_EQ(Text::number<double>("5e-324"), 5e-324);
    for (const char* text : {"", "-", ".", "e5", "+5", "0,5", " 5", "5 ", "0x10", "inf", "nan", "1e999", "-1e999",
                             "1e-999", "1.2.3", "1e", "--1"})
        EXPECT_FALSE(Text::number<double>(text)) << text;
    std::setlocale(LC_ALL, before.c_str());
}

TEST(Text, repairsWhatIsNoUTF8) {
    EXPECT_EQ(Text::repaired("caf\u00e9 \U0001F600"), "caf\u00e9 \U0001F600");
    EXPECT_EQ(Text::repaired("tab\t\0end"sv), "tab\t\0end"sv);
    EXPECT_EQ(Text::repaired("a\xff\xfe"), "a\uFFFD\uFFFD");
    EXPECT_EQ(Text::repaired("cut \xf0\x9f\x98"), "cut \uFFFD");
    EXPECT_EQ(Text::repaired("\xc3(\xa9"), "\uFFFD(\uFFFD");
    for (const char* bad :
         {"\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80"}) // overlong, surrogate, beyond
        EXPECT_EQ(Text::repaired(bad).find_first_not_of("\uFFFD"), std::string::npos) << bad;

    std::mt19937 random(7);
    for (int turn = 0; turn < 2000; ++turn) {
        std::string noise;
        for (int size = static_cast<int>(random() % 12); size > 0; --size)
            noise += static_cast<char>(random() % 2 == 0 ? random() : 0x80 + random() % 0x70);
        const std::string once = Text::repaired(noise);
        ASSERT_EQ(Text::repaired(once), once);
    }
}

TEST(Text, lowersLettersOfEveryScript) {
    EXPECT_EQ(Text::lowered(""), "");
    EXPECT_EQ(Text::lowered("PIP_[@`{"), "pip_[@`{");
    EXPECT_EQ(Text::lowered("ÄÖ Σ Я"), "äö σ я");
    EXPECT_EQ(Text::lowered("\u212A\u0130"), "ki\u0307"); // the Kelvin sign, and the one letter that grows
    EXPECT_EQ(Text::lowered("A\xFF\xC3"), "a\xFF\xC3");
}

TEST(Text, makesVisibleWhatWouldMoveTheCursorOrHide) {
    EXPECT_EQ(Text::visible("plain name"), "plain name");
    EXPECT_EQ(Text::visible("Größe \u65e5\u672c \U0001F600"), "Größe \u65e5\u672c \U0001F600");
    EXPECT_EQ(Text::visible("\x1b[2J\x1b]0;x\x07"), "\u241b[2J\u241b]0;x\u2407");
    EXPECT_EQ(Text::visible("a\nb\r\tc\x7f"), "a\u240ab\u240d\u2409c\u2421");
    EXPECT_EQ(Text::visible("nul\0"sv), "nul\u2400");
    EXPECT_EQ(Text::visible("photo\u202egpj.exe"), "photo<U+202E>gpj.exe");
    EXPECT_EQ(Text::visible("\u009b2J"), "<U+009B>2J"); // an escape sequence of one character
    EXPECT_EQ(Text::visible("a\u2028b\u200bc\U000E0041"), "a<U+2028>b<U+200B>c<U+E0041>");
    EXPECT_EQ(Text::visible("bad\xff"), "bad\uFFFD");
}

TEST(Text, measuresColumnsOfATerminal) {
    EXPECT_EQ(Text::columns(""), 0);
    EXPECT_EQ(Text::columns("plain"), 5);
    EXPECT_EQ(Text::columns("Größe"), 5);
    EXPECT_EQ(Text::columns("e\u0301"), 1);
    EXPECT_EQ(Text::columns("\u65e5\u672c\u8a9e"), 6);
    EXPECT_EQ(Text::columns("\uff21"), 2);             // fullwidth letter
    EXPECT_EQ(Text::columns("\uff76"), 1);             // halfwidth kana
    EXPECT_EQ(Text::columns("\u1112\u1161\u11ab"), 2); // one syllable in three letters
    EXPECT_EQ(Text::columns("\U0001F600"), 2);
}

TEST(Text, fitsTextIntoColumns) {
    EXPECT_EQ(Text::fitted("name", 4), "name");
    EXPECT_EQ(Text::fitted("names", 4), "nam…");
    EXPECT_EQ(Text::fitted("names", 1), "…");
    EXPECT_EQ(Text::fitted("names", 0), "");
    EXPECT_EQ(Text::fitted("names", -3), "");
    EXPECT_EQ(Text::fitted("", 3), "");
    EXPECT_EQ(Text::fitted("\u65e5\u672c\u8a9e", 6), "\u65e5\u672c\u8a9e");
    EXPECT_EQ(Text::fitted("\u65e5\u672c\u8a9e", 5), "\u65e5\u672c…");
    EXPECT_EQ(Text::fitted("\u65e5\u672c\u8a9e", 4), "\u65e5…"); // no half of a character
    EXPECT_EQ(Text::fitted("ae\u0301bc", 3), "ae\u0301…");       // the accent stays with its letter
    for (int width = 1; width < 12; ++width)
        EXPECT_LE(Text::columns(Text::fitted("a\u65e5e\u0301\u672c plain \U0001F600", width)), width);
}

} // namespace ostrivane
