#include "app/model/Navigation.hpp"

#include "core/model/PlatformWords.hpp"

#include <gtest/gtest.h>

#include <set>

namespace ostrivane {
namespace {

using Pages = std::vector<Page>;

TEST(Navigation, goesBackAndForward) {
    Navigation navigation;
    navigation.goBack();
    navigation.goForward();
    navigation.select(Page::overview);
    EXPECT_EQ(navigation.selectedPage(), Page::overview);
    EXPECT_TRUE(navigation.backStack().empty() && navigation.forwardStack().empty());
    navigation.select(Page::cpu);
    navigation.select(Page::memory);
    navigation.goBack();
    EXPECT_EQ(navigation.selectedPage(), Page::cpu);
    EXPECT_EQ(navigation.forwardStack(), Pages{Page::memory});
    navigation.select(Page::cpu);
    EXPECT_EQ(navigation.forwardStack(), Pages{Page::memory}) << "the page that is shown already";
    navigation.goBack();
    navigation.goForward();
    navigation.goForward();
    EXPECT_EQ(navigation.selectedPage(), Page::memory);
    EXPECT_EQ(navigation.backStack(), (Pages{Page::overview, Page::cpu}));
    navigation.goBack();
    navigation.select(Page::gpu);
    EXPECT_TRUE(navigation.forwardStack().empty()) << "another way was taken";
    EXPECT_EQ(navigation.backStack(), (Pages{Page::overview, Page::cpu}));
}

TEST(Page, everyPageIsReachableOnceAndNamed) {
    const Pages pages = shortcutPages();
    EXPECT_EQ(std::set<Page>(pages.begin(), pages.end()).size(), rawTexts(EnumTag<Page>{}).size());
    EXPECT_EQ(pages.size(), rawTexts(EnumTag<Page>{}).size());
    EXPECT_EQ(pages.back(), Page::settings);
    std::set<std::string> titles;
    for (const Page page : pages)
        titles.insert(title(page, PlatformWords::Linux));
    EXPECT_EQ(titles.size(), pages.size());
    EXPECT_FALSE(titles.contains(""));
    EXPECT_EQ(title(Page::health, PlatformWords::macOS), "Mac Health");
    EXPECT_EQ(title(Page::health, PlatformWords::Linux), "System Health");
    EXPECT_EQ(fromRawValue<Page>("no page"), std::nullopt);
}

} // namespace
} // namespace ostrivane
