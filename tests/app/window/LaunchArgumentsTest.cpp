#include "app/window/LaunchArguments.hpp"

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

LaunchDecision decided(const std::vector<std::string>& arguments) {
    return decideLaunch(parseLaunchArguments(arguments));
}

} // namespace

TEST(LaunchArguments, decideAboutWindowAndWelcome) {
    EXPECT_EQ(decided({}), (LaunchDecision{.showsWindow = true, .allowsWelcome = true}));
    EXPECT_EQ(decided({"--login"}), (LaunchDecision{.showsWindow = false, .allowsWelcome = false}));
    EXPECT_EQ(decided({"--background"}), (LaunchDecision{.showsWindow = false, .allowsWelcome = true}));
    EXPECT_EQ(decided({"--login", "--page", "cpu"}), (LaunchDecision{.showsWindow = true, .allowsWelcome = false}))
        << "a page that is asked for is shown";
    EXPECT_EQ(decided({"--page", "--background"}), (LaunchDecision{.showsWindow = false, .allowsWelcome = true}));
    EXPECT_EQ(decided({"--background", "--page=cpu"}), (LaunchDecision{.showsWindow = true, .allowsWelcome = true}));
}

TEST(LaunchArguments, passOverAPageThatIsNone) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--page", "nosuchpage"}, {"--page"}, {"--page="}, {"--page", "CPU"}}) {
        const LaunchArguments told = parseLaunchArguments(arguments);
        EXPECT_EQ(told.page, std::nullopt);
        EXPECT_EQ(told.problem, std::nullopt);
    }
    EXPECT_EQ(parseLaunchArguments({"--page", "ai"}).page, Page::ai);
}

TEST(LaunchArguments, sayWhatTheyCannotUnderstand) {
    struct {
        std::vector<std::string> given;
        const char* problem;
    } const cases[] = {
        {{"--nonsense"}, "--nonsense is not known."},
        {{"a\033[31mb"}, "a␛[31mb is not known."},
        {{"--replay"}, "--replay needs the file of a recording."},
        {{"--replay="}, "--replay needs the file of a recording."},
        {{"--screenshot", "there"}, "--screenshot goes with --replay."},
        {{"--size", "960x620"}, "--size goes with --screenshot."},
        {{"--size", "960x", "--screenshot", "a", "--replay", "b"}, "960x is no size such as 960x620."},
        {{"--size=1x620", "--screenshot", "a", "--replay", "b"}, "1x620 is no size such as 960x620."},
    };
    for (const auto& one : cases)
        EXPECT_EQ(parseLaunchArguments(one.given).problem, one.problem);
    const LaunchArguments pictures = parseLaunchArguments({"--size=960x620", "--screenshot=a b", "--replay", "c=d"});
    EXPECT_EQ(pictures.problem, std::nullopt);
    EXPECT_EQ(pictures.width, 960);
    EXPECT_EQ(pictures.height, 620);
    EXPECT_EQ(pictures.screenshots, "a b");
    EXPECT_EQ(pictures.replay, "c=d");
}

} // namespace ostrivane
