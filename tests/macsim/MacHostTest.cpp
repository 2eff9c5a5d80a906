#include "core/sampling/platform/macos/MacHost.hpp"

#include "core/sampling/platform/macos/WallClock.hpp"
#include "tests/macsim/MacSimTest.hpp"

#include <boost/json.hpp>
#include <cstdlib>
#include <unistd.h>

using namespace ostrivane;

namespace {

class MacHostTest : public MacSimTest {
protected:
    HostInfo info() {
        const HostPort port;
        return MacHost(port).info();
    }
    double uptime() {
        const HostPort port;
        return MacHost(port).uptime().value_or(-1);
    }
    static boost::json::array& services() { return macsim::registry().at("services").as_array(); }
};

constexpr auto performance = CoreLoad::Kind::performance;
constexpr auto efficiency = CoreLoad::Kind::efficiency;

} // namespace

TEST_F(MacHostTest, tellsTheFactsOfALaptop) {
    const HostInfo laptop = info();
    EXPECT_EQ(laptop.pageSize, 16384u);
    EXPECT_EQ(laptop.physicalMemory, 17179869184u);
    EXPECT_EQ(laptop.modelIdentifier, "Mac14,9");
    EXPECT_EQ(laptop.cpuBrand, "Apple M2 Pro");
    EXPECT_EQ(laptop.marketingName, "MacBook Pro (14-inch, 2023)");
    EXPECT_EQ(laptop.coreLayout, (CoreLayout{.performance = 6, .efficiency = 4, .logical = 10}));
    EXPECT_DOUBLE_EQ(laptop.nanosPerTick, 125.0 / 3);
    EXPECT_EQ(laptop.userID, getuid());
    EXPECT_TRUE(laptop.isAppleSilicon);
}

TEST_F(MacHostTest, knowsTheUsersHome) {
    const char* const home = std::getenv("HOME");
    const std::string before = home ? home : "";
    macsim::processTable().userNames[getuid()] = "ana";
    setenv("HOME", "/no/such/folder", 1);
    EXPECT_EQ(info().home, "/no/such/folder") << "what lies there is not looked at";
    for (const char* none : {"", "relative", "~"}) {
        setenv("HOME", none, 1);
        EXPECT_EQ(info().home, "/Users/ana") << none;
    }
    unsetenv("HOME");
    EXPECT_EQ(info().home, "/Users/ana");
    macsim::refuse("getpwuid_r");
    EXPECT_EQ(info().home, "");
    if (home)
        setenv("HOME", before.c_str(), 1);
}

// Core 5 bears its id as a number; "cpu8" is of an unknown kind, "cpu9" has an id of 2 bytes, "pmgr" is no core.
TEST_F(MacHostTest, knowsTheKindOfEachCoreThatSaysIt) {
    const CoreKinds want{{0, efficiency},  {1, efficiency},  {2, efficiency},  {3, efficiency},
                         {4, performance}, {5, performance}, {6, performance}, {7, performance}};
    EXPECT_EQ(info().coreKinds, want);
}

TEST_F(MacHostTest, takesTheLaterOfTwoEntriesForOneCore) {
    auto again = services()[0];
    again.at("properties").at("cluster-type") = boost::json::object{{"$data", "5000"}};
    services().push_back(again);
    EXPECT_EQ(info().coreKinds.at(0), performance);
}

TEST_F(MacHostTest, skipsCoresOfAnotherForm) {
    services()[0].at("properties").at("cluster-type") = "E"; // text where data belongs
    services()[1].at("properties").at("cluster-type") = boost::json::object{{"$data", ""}};
    services()[2].at("properties").at("logical-cpu-id") = true;
    services()[3].at("properties").at("logical-cpu-id") = 3.5;
    const CoreKinds kinds = info().coreKinds;
    EXPECT_EQ(kinds.size(), 4u);
    EXPECT_EQ(kinds.begin()->first, 4);
}

TEST_F(MacHostTest, hasNoKindsWithoutTheRegistry) {
    for (const char* call : {"IOServiceMatching", "IOServiceGetMatchingServices", "IORegistryEntryCreateCFProperty",
                             "CFStringCreateWithBytes"}) {
        macsim::reset();
        macsim::refuse(call);
        EXPECT_TRUE(info().coreKinds.empty()) << call;
    }
}

TEST_F(MacHostTest, countsTheCoresOfAMachineWithOneKind) {
    const CoreLayout oneKind{.performance = 10, .efficiency = 0, .logical = 10};
    macsim::sysctls().at("hw.nperflevels")[0] = std::byte{1};
    EXPECT_EQ(info().coreLayout, oneKind);
    macsim::sysctls().erase("hw.nperflevels");
    EXPECT_EQ(info().coreLayout, oneKind);
}

TEST_F(MacHostTest, fallsBackToTheActiveCores) {
    macsim::sysctls().at("hw.activecpu")[0] = std::byte{8};
    EXPECT_EQ(info().coreLayout.logical, 10);
    macsim::sysctls().erase("hw.logicalcpu");
    EXPECT_EQ(info().coreLayout.logical, 8);
    macsim::sysctls().erase("hw.perflevel1.logicalcpu");
    EXPECT_EQ(info().coreLayout, (CoreLayout{.performance = 6, .efficiency = 0, .logical = 8}));
}

TEST_F(MacHostTest, namesAMachineThatTellsLessOfItself) {
    macsim::registry().at("paths").as_object().clear();                                      // as on Intel
    EXPECT_EQ(info().marketingName, "Mac");                                                  // the family of "Mac14,9"
    macsim::sysctls().at("hw.model") = macsim::bytesOfHex("4d6163426f6f6b50726f31382c3300"); // "MacBookPro18,3"
    EXPECT_EQ(info().marketingName, "MacBook Pro");
    macsim::sysctls().erase("hw.model");
    macsim::sysctls().erase("machdep.cpu.brand_string");
    const HostInfo nameless = info();
    EXPECT_EQ(nameless.modelIdentifier, "Mac");
    EXPECT_EQ(nameless.cpuBrand, "CPU");
}

TEST_F(MacHostTest, standsWithoutMach) {
    macsim::sysctls().at("hw.pagesize")[1] = std::byte{0x20};
    macsim::refuse("host_page_size");
    macsim::refuse("mach_timebase_info");
    EXPECT_EQ(info().pageSize, 0x2000u); // by its name
    EXPECT_EQ(info().nanosPerTick, 1.0);
    macsim::reset();
    macsim::mach().timebaseDenominator = 0;
    EXPECT_EQ(info().nanosPerTick, 1.0);
}

TEST_F(MacHostTest, givesBackNoPortThatItDidNotGet) {
    macsim::refuse("mach_host_self");
    const HostPort none;
    EXPECT_EQ(none.get(), host_t{MACH_PORT_NULL});
}

TEST_F(MacHostTest, countsUptimeFromTheBootTime) {
    const double want = wallClock() - Date{1714640390.25};
    EXPECT_NEAR(uptime(), want, 5);
    macsim::sysctls().at("kern.boottime") = macsim::bytesOfHex("ffffffff0f0000000000000000000000"); // to come
    EXPECT_DOUBLE_EQ(uptime(), 86400.25);
    macsim::sysctls().erase("kern.boottime");
    EXPECT_DOUBLE_EQ(uptime(), 86400.25);
    macsim::mach().uptimeNanos = 0; // how the clock says that it failed
    EXPECT_EQ(uptime(), -1);
}
