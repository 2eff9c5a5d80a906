#include "app/model/SettingsText.hpp"

#include <gtest/gtest.h>

namespace ostrivane::SettingsText {
namespace {

using Values = std::map<std::string_view, std::string_view>;

TEST(SettingsText, readsWhatAPersonMayWrite) {
    EXPECT_EQ(
        values("\xEF\xBB\xBF  early = 1\r\n# appearance=light\n;x=1\n[General]\r\nappearance=dark\r\n"
               "popoverTab =  \"a = b\"  \nempty=\n=nameless\nno equals sign\n[Other]\nappearance=no\n"
               "[General]\nlast=\xFF"),
        (Values{{"early", "1"}, {"appearance", "dark"}, {"popoverTab", "\"a = b\""}, {"empty", ""}, {"last", "\xFF"}}));
    EXPECT_EQ(values("[general]\na=1\n"), Values());
    EXPECT_EQ(values("a=1\na=2\n"), (Values{{"a", "2"}})) << "the last counts";
}

TEST(SettingsText, changesNothingButOneValue) {
    EXPECT_EQ(replaced("", "a", "1"), "[General]\na=1\n");
    EXPECT_EQ(replaced("; mine\r\n[General]\r\na = 1  \r\nb=2\r\n", "a", "5"),
              "; mine\r\n[General]\r\na = 5  \r\nb=2\r\n");
    EXPECT_EQ(replaced("[General]\na=1\nrubbish \xFF\na=2\n", "a", "3"), "[General]\na=1\nrubbish \xFF\na=3\n");
    EXPECT_EQ(replaced("[General]\na=", "a", "3"), "[General]\na=3") << "no line feed at the end";
    EXPECT_EQ(replaced("a=1", "a", "3"), "a=3") << "ahead of any section";
}

TEST(SettingsText, addsWhereItIsReadBack) {
    EXPECT_EQ(replaced("[General]\na=1", "b", "2"), "[General]\na=1\nb=2\n");
    EXPECT_EQ(replaced("[General]\r\na=1\r\n\r\n[Other]\r\nb=3\r\n", "b", "2"),
              "[General]\r\na=1\r\nb=2\r\n\r\n[Other]\r\nb=3\r\n");
    EXPECT_EQ(replaced("[Other]\na=1", "a", "2"), "[Other]\na=1\n[General]\na=2\n");
    EXPECT_EQ(replaced("[General]\na=1\n[Other]\n[General]\n[Third]\n", "b", "2"),
              "[General]\na=1\n[Other]\n[General]\nb=2\n[Third]\n");
}

TEST(SettingsText, letsNoValueBecomeALine) {
    EXPECT_EQ(replaced("", "a", "[1,\r\n2]\n[Other]\nb=1"), "[General]\na=[1,  2] [Other] b=1\n");
    for (const char* none : {"", " a", "a=b", "a\nb", "[a", "#a", ";a",
                             "\xEF\xBB\xBF"
                             "a"}) {
        EXPECT_FALSE(isKey(none)) << none;
        EXPECT_EQ(replaced("x=1\n", none, "2"), "x=1\n") << none;
    }
}

TEST(SettingsText, removesEveryLineOfAKey) {
    EXPECT_EQ(removed("a=0\n[General]\na=1\nb=2\n a = 3\n[Other]\na=4\n", "a"), "[General]\nb=2\n[Other]\na=4\n");
    EXPECT_EQ(removed("[General]\nb=2\na=1", "a"), "[General]\nb=2\n");
    EXPECT_EQ(removed("[General]\n=1\n", ""), "[General]\n=1\n");
}

} // namespace
} // namespace ostrivane::SettingsText
