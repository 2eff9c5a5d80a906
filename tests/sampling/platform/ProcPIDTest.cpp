#include "core/sampling/platform/ProcPIDFiles.hpp"
#include "core/sampling/platform/ProcPIDStat.hpp"
#include "core/sampling/platform/Processes.hpp"
#include "core/sampling/platform/SocketLink.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace ostrivane;

namespace {

std::string line(const std::string& name) {
    return "4521 (" + name +
           ") S 1 4521 4521 0 -1 4194560 9 8 7 6 1234 56 777 888 20 0 12 0 98765 1000000 2500 184467 1 2\n";
}

TEST(ProcPIDStat, readsTheFieldsBehindWhateverTheProcessCallsItself) {
    for (const std::string name : {"bash", "(a) R (b c d e f)", "a\nb) S 1 2 3", ")", ""}) {
        const std::string text = line(name);
        const auto stat = ProcPIDStat::parse(text);
        ASSERT_TRUE(stat) << name;
        EXPECT_EQ(stat->name, name);
        EXPECT_EQ(stat->ppid, 1);
        EXPECT_EQ(stat->userTime + stat->systemTime, 1290u) << "without the 777 and 888 of children that have ended";
        EXPECT_EQ(stat->threads, 12);
        EXPECT_EQ(stat->start, 98765u);
        EXPECT_EQ(stat->resident, 2500u);
        EXPECT_EQ(stat->status(), ProcessInfo::sleeping);
    }
}

TEST(ProcPIDStat, givesNothingForALineThatIsNotWhole) {
    const std::string whole = line("bash");
    for (std::size_t size = 0; size < whole.find(" 2500"); ++size)
        EXPECT_FALSE(ProcPIDStat::parse(whole.substr(0, size + 1))) << size;
    for (const char* text : {"4521 (bash S 1 4521 4521 0 -1 4194560 9 8 7 6 1234 56 777 888 20 0 12 0 98765 1 1",
                             "1 (x) S 1 1 1 0 -1 1 9 8 7 6 -1 56 777 888 20 0 12 0 98765 1000000 2500 1", ")(", ""})
        EXPECT_FALSE(ProcPIDStat::parse(text)) << text;
}

TEST(ProcPIDStat, aFirstThreadThatEndedMakesNoZombie) {
    ProcPIDStat stat;
    stat.state = 'Z';
    stat.threads = 1;
    EXPECT_EQ(stat.status(), ProcessInfo::zombie);
    stat.threads = 3;
    EXPECT_EQ(stat.status(), ProcessInfo::sleeping);
    stat.state = 'T';
    EXPECT_EQ(stat.status(), ProcessInfo::stopped);
    stat.state = '?';
    EXPECT_EQ(stat.status(), ProcessInfo::unknown);
}

TEST(ProcPIDStat, givesHundredthsAndKilobytesInAnyUnits) {
    ProcPIDStat stat;
    stat.userTime = 1234;
    stat.systemTime = 56;
    stat.resident = 2500;
    stat.start = 98765;
    EXPECT_EQ(stat.totals(100, 4096), (SystemProcessTotals{1290, 10'000, 98765}));
    stat.start = 0;
    EXPECT_EQ(stat.totals(250, 16'384), (SystemProcessTotals{516, 40'000}));
    constexpr std::uint64_t highest = std::numeric_limits<std::uint64_t>::max();
    stat.userTime = stat.resident = highest;
    EXPECT_EQ(stat.totals(100, 4096), (SystemProcessTotals{highest / 100, highest / 1024}));
}

TEST(ProcPIDFiles, readTheSmallFiles) {
    EXPECT_EQ(ProcPIDFiles::privatePages("370000 92500 40000 100 0 185000 0\n"), 52500u);
    EXPECT_EQ(ProcPIDFiles::privatePages("1 5 9"), 0u) << "the counts of threads lag behind each other";
    EXPECT_FALSE(ProcPIDFiles::privatePages("1 5"));
    const auto traffic =
        ProcPIDFiles::diskTraffic("rchar: 9\nread_bytes: 300\nwrite_bytes: 90\ncancelled_write_bytes: 5\n");
    ASSERT_TRUE(traffic);
    EXPECT_EQ(traffic->read, 300u);
    EXPECT_EQ(traffic->written, 90u);
    EXPECT_FALSE(ProcPIDFiles::diskTraffic("read_bytes: 300\n"));
    EXPECT_EQ(ProcPIDFiles::swapped("VmRSS:\t 5 kB\nVmSwap:\t    12 kB\n"), 12u * 1024);
    EXPECT_FALSE(ProcPIDFiles::swapped("Name:\tkthreadd\n"));
    EXPECT_EQ(ProcPIDFiles::withoutDeletedMark("/usr/bin/x (deleted)"), "/usr/bin/x");
}

TEST(ProcPIDFiles, argumentsAreThoseThatTheProcessShows) {
    using Arguments = std::vector<std::string>;
    const std::string plain("node\0/x/vite\0\0\0", 14);
    EXPECT_EQ(ProcPIDFiles::arguments(plain, "/usr/bin/node"), (Arguments{"node", "/x/vite"}));
    EXPECT_EQ(ProcPIDFiles::arguments(std::string("a\0\0b", 4), ""), (Arguments{"a", "", "b"}));
    EXPECT_EQ(ProcPIDFiles::arguments("/usr/lib/b/b --type=renderer --x", "/usr/lib/b/b"),
              (Arguments{"/usr/lib/b/b", "--type=renderer", "--x"}))
        << "rewritten as one string";
    EXPECT_EQ(ProcPIDFiles::arguments("nginx: worker process", "/usr/sbin/nginx"),
              (Arguments{"nginx: worker process"}));
    EXPECT_EQ(ProcPIDFiles::arguments("\xff", ""), (Arguments{"\xEF\xBF\xBD"}));
    EXPECT_FALSE(ProcPIDFiles::arguments("", "/x"));
    EXPECT_FALSE(ProcPIDFiles::arguments(std::string("\0\0", 2), "/x"));
}

TEST(ProcPIDFiles, aVariableIsFoundAmongOthers) {
    using namespace std::string_literals;
    const std::string environment = "NOT_X=1\0X\0X_Y=2\0X=a=b\nX=c\0X=3\0E=\0\0=\0Z=cut"s;
    EXPECT_EQ(ProcPIDFiles::variable(environment, "X"), "a=b\nX=c");
    EXPECT_EQ(ProcPIDFiles::variable(environment, "E"), "");
    EXPECT_EQ(ProcPIDFiles::variable(environment, "Z"), "cut");
    EXPECT_FALSE(ProcPIDFiles::variable(environment, "Y"));
    EXPECT_FALSE(ProcPIDFiles::variable("", "X"));
}

TEST(ProcPIDFiles, aNameThatWasCutIsFoundInTheFirstArgument) {
    const auto name = [](std::string_view cut, std::string_view cmdline) {
        return std::string(ProcPIDFiles::uncutName(cut, cmdline));
    };
    EXPECT_EQ(name("tracker-miner-f", "/usr/libexec/tracker-miner-fs-3"), "tracker-miner-fs-3");
    EXPECT_EQ(name("tracker-miner-f", "/usr/libexec/tracker-miner-fs-3 --slow"), "tracker-miner-fs-3");
    EXPECT_EQ(name("Isolated Web Co", "/usr/lib/firefox/firefox"), "Isolated Web Co") << "a name that it gave itself";
    EXPECT_EQ(name("short", "/bin/shorter"), "short") << "nothing was cut";
}

TEST(SocketLink, isANumberInBrackets) {
    EXPECT_EQ(SocketLink::parse("socket:[4294967295]"), 4294967295U);
    for (const char* other : {"", "socket:[", "socket:[]", "socket:[1", "socket:[4294967296]", "socket:[-1]",
                              "pipe:[12]", "/tmp/socket:[12]", "anon_inode:[eventfd]", "socket:[12] "})
        EXPECT_FALSE(SocketLink::parse(other)) << other;
}

} // namespace
