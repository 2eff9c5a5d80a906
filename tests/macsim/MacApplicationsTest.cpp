#include "core/sampling/platform/macos/MacApplications.hpp"

#include "tests/macsim/MacSimTest.hpp"

#include <boost/json.hpp>

using namespace ostrivane;

namespace {

using Names = std::vector<std::string>;

class MacApplicationsTest : public MacSimTest {
protected:
    static BundleFacts facts(boost::json::object bundle) {
        macsim::bundles()["/Applications/Foo.app"] = std::move(bundle);
        return MacApplications().bundleFacts("/Applications/Foo.app");
    }
};

} // namespace

TEST_F(MacApplicationsTest, namesAreLocalizedFirstAndForDisplayFirst) {
    const auto all = facts({{"plain",
                             {{"CFBundleDisplayName", "Photos"},
                              {"CFBundleName", "PhotosApp"},
                              {"CFBundleIdentifier", "com.example.photos"}}},
                            {"localized", {{"CFBundleDisplayName", "Fotos \u00e4"}, {"CFBundleName", "FotosApp"}}}});
    EXPECT_EQ(all, (BundleFacts{.names = {"Fotos \u00e4", "Photos", "FotosApp", "PhotosApp"},
                                .bundleID = "com.example.photos",
                                .fileName = {}}));
    EXPECT_EQ(facts({{"plain", {{"CFBundleName", "Tool"}}}, {"localized", {{"CFBundleName", "Werkzeug"}}}}).names,
              (Names{"Werkzeug", "Tool"}));
    EXPECT_EQ(facts({{"plain", {{"CFBundleDisplayName", "Tool"}}}}).names, Names{"Tool"});
}

TEST_F(MacApplicationsTest, onlyTextsAreNames) {
    EXPECT_EQ(facts({{"plain", {{"CFBundleDisplayName", 7}, {"CFBundleName", "Foo"}, {"CFBundleIdentifier", true}}},
                     {"localized", {{"CFBundleDisplayName", {{"$data", "466f6f"}}}}}}),
              (BundleFacts{.names = {"Foo"}, .bundleID = std::nullopt, .fileName = {}}));
}

TEST_F(MacApplicationsTest, aPlaceWithoutABundleSaysNothing) {
    MacApplications applications;
    EXPECT_FALSE(applications.installed());
    EXPECT_EQ(applications.bundleFacts("/Applications/Gone.app"), BundleFacts{});
    EXPECT_EQ(applications.bundleFacts(""), BundleFacts{});
    EXPECT_EQ(facts({}), BundleFacts{}) << "a folder";
    EXPECT_EQ(facts({{"plain", boost::json::object()}}), BundleFacts{}) << "a folder";
    for (const char* call : {"CFStringCreateWithBytes", "CFURLCreateFromFileSystemRepresentation"}) {
        macsim::refuse(call);
        EXPECT_TRUE(facts({{"plain", {{"CFBundleName", "Foo"}}}}).names.empty()) << call;
    }
}
