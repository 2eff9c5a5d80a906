#include "core/attribution/DesktopEntryIndex.hpp"

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

InstalledApplication application(const std::string& path, const std::string& id,
                                 const std::vector<std::string>& folders = {}) {
    return {.path = path,
            .id = id,
            .name = {},
            .icon = {},
            .noDisplay = false,
            .programs = {"/usr/bin/app"},
            .folders = folders};
}

DesktopEntryIndex indexOf(InstalledApplications applications) {
    return DesktopEntryIndex(std::make_shared<const InstalledApplications>(std::move(applications)));
}

TEST(DesktopEntryIndex, answersByTheFirstOfTwoAndPrefersTheExactIdentifier) {
    const auto index = indexOf({application("/x/App.desktop", "App.desktop", {"/opt"}),
                                application("/x/app.desktop", "app.desktop", {"/opt/app", "/opt"})});
    EXPECT_EQ(index.bundleForID("app"), index.bundleAt("/x/app.desktop"));
    EXPECT_EQ(index.bundleForID("APP"), index.bundleAt("/x/App.desktop"));
    EXPECT_EQ(index.bundleForProgram("/usr/bin/app"), index.bundleAt("/x/App.desktop"));
    EXPECT_FALSE(index.bundleForProgram("/opt/app/helper"));
    EXPECT_EQ(index.bundleForPath("/opt/other"), index.bundleAt("/x/App.desktop"));
    EXPECT_EQ(index.bundleForPath("/opt/app/lib/helper"), index.bundleAt("/x/app.desktop"));
    EXPECT_FALSE(index.bundleAt("/x/none.desktop") || index.bundleForID(""));
}

TEST(DesktopEntryIndex, measuresShortNamesWithoutTheDomain) {
    auto maps = application("/x/org.gnome.Maps.desktop", "org.gnome.Maps.desktop");
    maps.name = "Karten";
    const auto index = indexOf({maps, application("/x/a.b.desktop", "a.b.desktop")});
    EXPECT_EQ(index.facts("/x/org.gnome.Maps.desktop"),
              (BundleFacts{.names = {"Karten"}, .bundleID = "org.gnome.Maps.desktop", .fileName = "Maps"}));
    EXPECT_EQ(index.facts("/x/a.b.desktop"), (BundleFacts{.names = {}, .bundleID = "a.b.desktop", .fileName = {}}));
    EXPECT_EQ(index.facts("/x/none.desktop"), BundleFacts{});
}

TEST(DesktopEntryIndex, knowsNothingWithoutAList) {
    const DesktopEntryIndex none;
    EXPECT_FALSE(none.bundleForPath("/usr/bin/app") || none.bundleForID("app") || none.bundleAt("/x/app.desktop"));
}

} // namespace
} // namespace ostrivane
