#include "core/attribution/BundleInfoCache.hpp"
#include "tests/attribution/DesktopTree.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace ostrivane {
namespace {

std::string shownAs(const std::string& key, const std::vector<std::string>& names) {
    BundleInfoCache cache("macOS System", [&](const std::string&) { return BundleFacts{names, std::nullopt, {}}; });
    return cache.info(key).name;
}

TEST(BundleInfoCache, namesABundleForAPerson) {
    struct {
        std::string key, name, want;
    } cases[] = {
        {"/Applications/VS Studio.app", "VS", "VS Studio"},
        {"/Applications/VS Studio.app", "vs", "VS Studio"},
        {"/Applications/Other.app", "Code", "Code"},
        {"/Applications/Code.app", "Code", "Code"},
        {"/Applications/Visual Code.app", "Visual", "Visual"}, // six characters are no short form
        {"/Applications/Straßenbahn.app", "STR", "Straßenbahn"},
        {"/Applications/Grüße an alle.app", "GRÜ", "Grüße an alle"},
        {"/Applications/Café au lait.app", "cafe\xCC\x81", "cafe\xCC\x81"}, // four characters, five code points
        {"/Applications/Chat.app", "\u200E Chat App\u202C\u00A0\n", "Chat App"},
        {"/Applications/Chat.app", "", "Chat"},
        {"/Applications/Chat.app", "\u200E\u200E\u200E\u200E\u200E", "Chat"},
        {"/Applications/Chat.app", "a\xFFz", "a\xEF\xBF\xBDz"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(shownAs(c.key, {c.name}), c.want) << c.key;
    EXPECT_EQ(shownAs("/Applications/Foo Bar.app", {}), "Foo Bar");
    EXPECT_EQ(shownAs("/Applications/Foo.app", {"First", "Second"}), "First");
}

TEST(BundleInfoCache, asksNothingForKeysThatAreNoBundle) {
    BundleInfoCache cache("macOS System", [](const std::string& path) {
        ADD_FAILURE() << path;
        return BundleFacts{};
    });
    EXPECT_EQ(cache.info("system"), (BundleInfoCache::Info{"macOS System", std::nullopt}));
    EXPECT_EQ(cache.info("exe:node"), (BundleInfoCache::Info{"node", std::nullopt}));
}

TEST(BundleInfoCache, readsABundleOnceForAllThreads) {
    std::atomic<int> reads = 0;
    BundleInfoCache cache("System", [&](const std::string&) {
        ++reads;
        return BundleFacts{{"Foo"}, "com.example.foo", {}};
    });
    const BundleInfoCache::Info* first = &cache.info("/Applications/0.app");
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&] {
            for (int app = 0; app < 200; ++app)
                EXPECT_EQ(cache.info("/Applications/" + std::to_string(app) + ".app").bundleID, "com.example.foo");
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(reads, 200);
    EXPECT_EQ(first, &cache.info("/Applications/0.app")); // still in its place after the others
}

TEST(BundleInfoCache, keepsTheDomainOfAnEntrysFileNameOut) {
    DesktopTree tree;
    tree.entry("org.gnome.Maps.desktop", "Name=Maps\n").entry("libreoffice-calc.desktop", "Name=Calc\n");
    const auto index = tree.index();
    BundleInfoCache cache("System", [&](const std::string& path) { return index.facts(path); });
    EXPECT_EQ(cache.info("/usr/share/applications/org.gnome.Maps.desktop").name, "Maps");
    EXPECT_EQ(cache.info("/usr/share/applications/libreoffice-calc.desktop").name, "libreoffice-calc");
    EXPECT_EQ(cache.info("/usr/share/applications/removed.desktop").name, "removed");
}

} // namespace
} // namespace ostrivane
