#include "core/attribution/DevClassifier.hpp"

#include "core/attribution/DevClassifierTables.hpp"
#include "core/model/Text.hpp"

#include <gtest/gtest.h>

#include <ostream>
#include <set>

namespace ostrivane::DevClassifier {

void PrintTo(const Match& match, std::ostream* out) {
    *out << match.kind << " (" << rawValue(match.category) << ")";
}

namespace {

using Arguments = std::vector<std::string>;

std::optional<Match> named(std::string_view name) {
    return classify(name, std::nullopt, std::nullopt);
}

std::optional<Match> started(std::string_view name, const Arguments& arguments) {
    return classify(name, std::nullopt, arguments);
}

constexpr Match node{"Node", Category::runtime};
constexpr Match python{"Python", Category::runtime};
constexpr Match vite{"Vite", Category::server};

TEST(DevClassifierTables, canAllBeReached) {
    // A key that is not in lower case never matches, and the second of two equal executables never does.
    std::set<std::string_view> names;
    for (const TableRow& row : executables) {
        EXPECT_EQ(row.text, Text::lowered(std::string(row.text)));
        EXPECT_TRUE(names.insert(row.text).second) << row.text;
    }
    for (const TableRow& row : hintNeedles)
        EXPECT_EQ(row.text, Text::lowered(std::string(row.text)));
    for (const auto& rules :
         {std::span<const AIBundleRule>(macAIBundles), std::span<const AIBundleRule>(linuxAIBundles)})
        for (const AIBundleRule& rule : rules)
            EXPECT_EQ(rule.text, Text::lowered(std::string(rule.text)));
    for (const std::string_view prefix : {"python", "postgres", "php", "ruby", "node"})
        EXPECT_TRUE(names.contains(prefix)) << prefix;
}

TEST(DevClassifier, knowsExecutablesByPathThenByNameThenByPrefix) {
    EXPECT_EQ(classify("MainThread", "/usr/bin/node", std::nullopt), node);
    EXPECT_EQ(classify("node", "/opt/tool/launcher", std::nullopt), node);
    EXPECT_EQ(classify("python", "/usr/bin/postgres", std::nullopt)->kind, "Postgres"); // the path comes first
    EXPECT_EQ(classify("java", "/usr/bin/python3.11", std::nullopt)->kind, "Java");     // a whole name before a prefix
    EXPECT_EQ(named("Python"), python);
    EXPECT_EQ(named("python3.11"), python);
    EXPECT_EQ(named("php8.2"), (Match{"PHP", Category::runtime}));
    EXPECT_EQ(named("php-fpm"), (Match{"PHP-FPM", Category::server})); // not by the prefix
    EXPECT_EQ(named("postgres-15"), (Match{"Postgres", Category::database}));
    EXPECT_EQ(named("doc\u212Aer"), (Match{"Docker", Category::container})) << "the Kelvin sign in lower case is k";
}

TEST(DevClassifier, leavesOtherProgramsAlone) {
    for (const char* name :
         {"", "bash", "xnode", "golang", "airplay", "node-helper", "Node Helper (Renderer)", "\xFF\xFE"})
        EXPECT_EQ(named(name), std::nullopt) << name;
    for (const char* path : {"", "/", "/usr/bin/bash", "/node/", "relative/bash"})
        EXPECT_EQ(classify("sh", path, Arguments{"sh", "-c", "true"}),
                  path == std::string_view("/node/") ? std::optional(node) : std::nullopt)
            << path;
}

TEST(DevClassifier, takesTheFirstHintOfTheArguments) {
    EXPECT_EQ(started("node", {"node", "/x/node_modules/.bin/vite"}), vite);
    EXPECT_EQ(started("node", {"node", "/x/node_modules/.bin/VITE"}), vite);
    EXPECT_EQ(started("node-helper", {"node-helper", "vite"}), vite);
    EXPECT_EQ(started("bash", {"bash", "storybook", "vite"}), vite) << "the order of the table, not of the arguments";
    EXPECT_EQ(started("node", {"node", "ng", "serve"}), (Match{"Angular", Category::server})) << "over two arguments";
    EXPECT_EQ(started("node", {"node", "ng", "", "serve"}), (Match{"Node", Category::server}));
    EXPECT_EQ(started("python3", {"python3", "/srv/ComfyUI/main.py"}), (Match{"ComfyUI", Category::ai}));
    EXPECT_EQ(started("java", {"java", "-jar", "gradle.jar"}), (Match{"Gradle", Category::buildTool}));
    EXPECT_EQ(started("vite", {"vite"}), std::nullopt) << "the program's own name is no hint";
    EXPECT_EQ(started("vite", {}), std::nullopt);
}

TEST(DevClassifier, searchesSixArgumentsAfterTheProgram) {
    EXPECT_EQ(started("node", {"node", "1", "2", "3", "4", "5", "vite"}), vite);
    EXPECT_EQ(started("node", {"node", "1", "2", "3", "4", "5", "6", "vite"}), node);
}

TEST(DevClassifier, doesNotSearchWhatItsNameSaysAlready) {
    EXPECT_EQ(started("postgres", {"postgres", "-D", "/srv/next", "start"})->kind, "Postgres");
    EXPECT_EQ(started("nginx", {"nginx", "-c", "/etc/vite.conf"})->kind, "nginx");
    EXPECT_EQ(started("ollama", {"ollama", "serve"}), (Match{"Ollama", Category::ai}));
    EXPECT_EQ(started("docker", {"docker", "run", "next"}), (Match{"Docker", Category::container}));
    EXPECT_EQ(started("uv", {"uv", "run", "flask"}), (Match{"Flask", Category::server})) << "a build tool is searched";
}

TEST(DevClassifier, callsARuntimeAServerWhenToldToServe) {
    const Match server{"Node", Category::server};
    for (const char* verb : {"dev", "serve", "start", "run"})
        EXPECT_EQ(started("node", {"node", verb}), server) << verb;
    EXPECT_EQ(started("node", {"node", "1", "2", "3", "4", "5", "6", "7", "dev"}), server) << "anywhere";
    for (const char* other : {"Dev", "developer", "dev ", "server.js", ""})
        EXPECT_EQ(started("node", {"node", other}), node) << other;
    EXPECT_EQ(started("node", {"dev"}), node);
    EXPECT_EQ(started("node", {"dev", "x"}), node) << "the first argument is the program";
    EXPECT_EQ(started("bash", {"bash", "dev"}), std::nullopt) << "no development tool to begin with";
}

TEST(DevClassifier, readsWordsOfACommandLineAlike) {
    const std::vector<std::string_view> words{"node", "/x/vite"};
    EXPECT_EQ(classify("node", std::nullopt, words), vite);
    EXPECT_EQ(classify("node", std::nullopt, std::span<const std::string_view>()), node);
}

TEST(DevClassifier, standsHugeAndBrokenArguments) {
    const std::string longestOnLinux(128 * 1024 - 1, 'v');
    EXPECT_EQ(started("node", {"node", longestOnLinux, longestOnLinux, longestOnLinux, longestOnLinux, longestOnLinux,
                               longestOnLinux + "vite"}),
              vite)
        << "whatever a program can be started with is searched whole";
    EXPECT_EQ(started("node", {"node", std::string(4 << 20, '\xFF'), "vite"}), node) << "beyond that the end is cut";
    EXPECT_EQ(started("node", {"node", std::string("\xC3\0\xE2\x82vite", 8)}), vite);
}

TEST(AIRuntime, isToldByTheBundlePathOnMacOS) {
    const struct {
        std::string_view path, runtime;
    } cases[] = {{"/Applications/LM Studio.app", "LM Studio"},
                 {"/Applications/OLLAMA.app", "Ollama"},
                 {"/Applications/Jan.app", "Jan"},
                 {"/Users/a/gpt4all/bin/chat.app", "GPT4All"},
                 {"/Applications/Msty.app", "Msty"},
                 {"/Applications/Draw Things.app", "Draw Things"}};
    for (const auto& c : cases)
        EXPECT_EQ(aiRuntime(c.path, macAIBundles), c.runtime) << c.path;
    for (const char* other : {"", "/Applications/Jan.app/Contents", "/Applications/Sejan.app", "jan.app"})
        EXPECT_EQ(aiRuntime(other, macAIBundles), std::nullopt) << other;
    EXPECT_EQ(aiRuntime(std::nullopt, macAIBundles), std::nullopt);
}

TEST(AIRuntime, isToldByIdOrNameOfTheEntryOnLinux) {
    EXPECT_EQ(aiRuntime("LM-Studio-0.3.5-x64.desktop", linuxAIBundles), "LM Studio");
    EXPECT_EQ(aiRuntime("ai.jan.Jan.desktop", linuxAIBundles), "Jan");
    EXPECT_EQ(aiRuntime("io.gpt4all.gpt4all.desktop", linuxAIBundles), "GPT4All");
    EXPECT_EQ(aiRuntime("Msty", linuxAIBundles), "Msty");
    EXPECT_EQ(aiRuntime("January.desktop", linuxAIBundles), std::nullopt);
}

} // namespace

} // namespace ostrivane::DevClassifier
