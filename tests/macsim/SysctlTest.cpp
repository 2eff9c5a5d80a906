#include "core/sampling/platform/macos/Sysctl.hpp"

#include "tests/macsim/MacSimTest.hpp"

using namespace ostrivane;

using SysctlTest = MacSimTest;

TEST_F(SysctlTest, readsNumbersOfBothSizesSigned) {
    EXPECT_EQ(Sysctl::integer("hw.memsize"), 17179869184);
    EXPECT_EQ(Sysctl::integer("hw.logicalcpu"), 10);
    macsim::sysctls()["small"] = macsim::bytesOfHex("feffffff");
    macsim::sysctls()["large"] = macsim::bytesOfHex("feffffffffffffff");
    EXPECT_EQ(Sysctl::integer("small"), -2);
    EXPECT_EQ(Sysctl::integer("large"), -2);
}

TEST_F(SysctlTest, readsTextsWithoutTheirZero) {
    EXPECT_EQ(Sysctl::string("hw.model"), "Mac14,9");
    macsim::sysctls()["long"] = std::vector<std::byte>(100'000, std::byte{'a'});
    EXPECT_EQ(Sysctl::string("long"), std::string(100'000, 'a')); // a zero that is missing ends nothing early
}

TEST_F(SysctlTest, readsItsRecords) {
    EXPECT_EQ(Sysctl::bootTime(), Date{1714640390.25});
    EXPECT_EQ(Sysctl::swapUsage(), (SwapUsage{.total = 2147483648, .used = 1207959552}));
}

TEST_F(SysctlTest, isAbsentForUnknownNamesAndOtherForms) {
    EXPECT_FALSE(Sysctl::integer("hw.nothing"));
    EXPECT_FALSE(Sysctl::string("hw.nothing"));
    EXPECT_FALSE(Sysctl::integer("machdep.cpu.brand_string")) << "longer than a number";
    EXPECT_FALSE(Sysctl::integer("vm.swapusage"));
    macsim::sysctls()["empty"] = {};
    EXPECT_FALSE(Sysctl::integer("empty"));
    EXPECT_FALSE(Sysctl::string("empty"));
    for (const char* name : {"kern.boottime", "vm.swapusage"})
        macsim::sysctls()[name].pop_back();
    EXPECT_FALSE(Sysctl::bootTime());
    EXPECT_FALSE(Sysctl::swapUsage());
    for (const char* name : {"kern.boottime", "vm.swapusage"})
        macsim::sysctls()[name].resize(64);
    EXPECT_FALSE(Sysctl::bootTime()) << "does not fit";
    EXPECT_FALSE(Sysctl::swapUsage()) << "does not fit";
}
