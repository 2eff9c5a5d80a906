#include "core/sampling/platform/CPUInfo.hpp"
#include "core/sampling/platform/CPUList.hpp"
#include "core/sampling/platform/CoreTopology.hpp"
#include "core/sampling/platform/MachineName.hpp"
#include "core/sampling/platform/ProcLoadavg.hpp"
#include "core/sampling/platform/ProcSwaps.hpp"
#include "core/sampling/platform/ProcUptime.hpp"

#include <gtest/gtest.h>

#include <string>

namespace ostrivane {

namespace {

using Kind = CoreLoad::Kind;
using Numbers = std::vector<std::int64_t>;

std::string armCore(int index, std::string_view implementer, std::string_view part) {
    return "processor\t: " + std::to_string(index) +
           "\nBogoMIPS\t: 48.00\nCPU implementer\t: " + std::string(implementer) +
           "\nCPU architecture: 8\nCPU part\t: " + std::string(part) + "\nCPU revision\t: 0\n\n";
}

} // namespace

TEST(CPUList, readsNumbersAndRanges) {
    EXPECT_EQ(CPUList::parse("0-3,8,10-11\n"), (Numbers{0, 1, 2, 3, 8, 10, 11}));
    EXPECT_EQ(CPUList::parse("7"), Numbers{7});
    EXPECT_EQ(CPUList::parse("\n"), Numbers{}) << "no core is a set too";
}

TEST(CPUList, isBoundedWhateverItClaims) {
    EXPECT_EQ(CPUList::parse("0-4294967295")->size(), static_cast<std::size_t>(CPUList::limit));
    EXPECT_EQ(CPUList::parse("1,99999999"), Numbers{1});
    for (const char* text : {"3-1", "0-1,", ",0", "0--1", "-1", "a", "0-3,2", "1,1", "0-99999999999", "0 1", "0-3:1/2"})
        EXPECT_FALSE(CPUList::parse(text)) << text;
}

TEST(CoreTopology, hybridMachinesListTheirFastCoresFirst) {
    CoreTopology cores;
    cores.possible = {0, 1, 2, 3, 4};
    cores.online = {0, 1, 2, 4};
    cores.fast = {0, 1};
    cores.frugal = {2, 3};
    EXPECT_EQ(cores.kinds(), (CoreKinds{{0, Kind::performance},
                                        {1, Kind::performance},
                                        {2, Kind::efficiency},
                                        {3, Kind::efficiency},
                                        {4, Kind::unknown}}));
    EXPECT_EQ(cores.layout(4), (CoreLayout{.performance = 2, .efficiency = 1, .logical = 4})) << "of those online";
    cores.fast.clear();
    EXPECT_EQ(cores.kinds().at(2), Kind::unknown) << "the efficient kind alone makes no hybrid";
    EXPECT_EQ(cores.layout(4), (CoreLayout{.performance = 4, .efficiency = 0, .logical = 4}));
}

TEST(CoreTopology, capacitiesFarApartAreKinds) {
    CoreTopology cores;
    cores.possible = cores.online = {0, 1, 2};
    cores.capacities = {{0, 768}, {1, 769}, {2, 1024}};
    EXPECT_EQ(cores.kinds(), (CoreKinds{{0, Kind::efficiency}, {1, Kind::performance}, {2, Kind::performance}}));
    cores.capacities = {{0, 769}, {1, 1024}};
    EXPECT_EQ(cores.kinds(), (CoreKinds{{0, Kind::unknown}, {1, Kind::unknown}, {2, Kind::unknown}}))
        << "favoured cores are no other kind";
    cores.capacities = {{0, 0}, {1, 0}};
    EXPECT_EQ(cores.kinds().at(0), Kind::unknown);
    cores.capacities = {{0, 1}, {1, UINT64_MAX}};
    EXPECT_EQ(cores.kinds().at(1), Kind::performance);
}

TEST(CPUInfo, takesTheNameThatTheArchitectureGives) {
    EXPECT_EQ(CPUInfo::brand("processor\t: 0\nmodel\t\t: 154\nmodel name\t: Xeon \xff W\ncpu family\t: 6\n", {}),
              "Xeon \xEF\xBF\xBD W");
    EXPECT_EQ(CPUInfo::brand("Model Name\t\t: Loongson-3A5000\n", {}), "Loongson-3A5000");
    EXPECT_EQ(CPUInfo::brand("processor\t: 0\ncpu\t\t: POWER9, altivec supported\n", {}), "POWER9, altivec supported");
    EXPECT_EQ(CPUInfo::brand("processor\t: 0\nuarch\t: sifive,u74-mc\n", {}), "sifive,u74-mc");
    for (const char* text : {"", "model name\t:\n", "cpu cores: 4\n", ":\n:::", "CPU part: 0xd05\n"})
        EXPECT_EQ(CPUInfo::brand(text, {}), "CPU") << text;
}

TEST(CPUInfo, namesTheDifferentCoresOfARMStrongestFirst) {
    const std::string text = armCore(0, "0x41", "0xd05") + armCore(1, "0x41", "0xd05") + armCore(2, "0x41", "0xd0b");
    EXPECT_EQ(CPUInfo::brand(text, {{0, 414}, {1, 414}, {2, 1024}}), "Cortex-A76 + Cortex-A55");
    EXPECT_EQ(CPUInfo::brand(text, {}), "Cortex-A55 + Cortex-A76");
    EXPECT_EQ(CPUInfo::brand(armCore(0, "0x61", "0x022") + armCore(1, "0x61", "0x023"), {}), "Apple");
    EXPECT_EQ(CPUInfo::brand(armCore(0, "0x41", "0xfff") + armCore(1, "0x99", "0xd05") + armCore(2, "65", "d05"), {}),
              "CPU");
}

TEST(MachineName, isTheProductOfItsMaker) {
    MachineName name;
    name.sysVendor = name.boardVendor = "Dell Inc.\n";
    name.productName = "XPS 13 9310\n";
    name.boardName = "0MRT12\n";
    EXPECT_EQ(name.marketingName(), "Dell Inc. XPS 13 9310");
    EXPECT_EQ(name.modelIdentifier(), "XPS 13 9310");
    name.sysVendor = "HP\n";
    name.productName = "HP EliteBook 840\n";
    EXPECT_EQ(name.marketingName(), "HP EliteBook 840") << "the maker once";
    name.sysVendor = "LENOVO\n";
    name.productName = "21CBCTO1WW\n";
    name.productVersion = "ThinkPad X1\n";
    EXPECT_EQ(name.marketingName(), "ThinkPad X1");
    EXPECT_EQ(name.modelIdentifier(), "21CBCTO1WW");
    name.productVersion = "None\n";
    EXPECT_EQ(name.marketingName(), "LENOVO 21CBCTO1WW");
}

TEST(MachineName, isNeverAPlaceholder) {
    EXPECT_EQ(MachineName().marketingName(), "PC");
    for (const char* placeholder : {"To Be Filled By O.E.M.", "To be filled by O.E.M.", "System Product Name",
                                    "Default string", "Not Applicable", "INVALID", "0123456789", " \n"}) {
        MachineName name;
        name.sysVendor = name.productName = name.productVersion = placeholder;
        name.boardVendor = "Maker";
        name.boardName = "Board 1";
        EXPECT_EQ(name.marketingName(), "Maker Board 1") << placeholder;
        EXPECT_EQ(name.modelIdentifier(), "PC") << placeholder;
        name.boardName = placeholder;
        EXPECT_EQ(name.marketingName(), "PC") << placeholder;
    }
}

TEST(MachineName, endsAtTheNULOfADeviceTree) {
    using namespace std::string_literals;
    MachineName name;
    name.compatible = "radxa,rock-5b\0rockchip,rk3588\0"s;
    EXPECT_EQ(name.marketingName(), "radxa,rock-5b");
    name.model = "Radxa ROCK 5B\0"s;
    EXPECT_EQ(name.marketingName(), "Radxa ROCK 5B");
    EXPECT_EQ(name.modelIdentifier(), "radxa,rock-5b");
    name.model = "\xc3(\0"s;
    EXPECT_EQ(name.marketingName(), "\xEF\xBF\xBD(") << "bytes that are no text";
}

TEST(ProcLoadavg, needsAllThree) {
    EXPECT_EQ(ProcLoadavg::parse("1.42 1.10 0.87 2/1544 42107\n"), (LoadAverage{1.42, 1.10, 0.87}));
    for (const char* text : {"", "1.42", "1.42 1.10\n", "1 2 x", "1 -2 3", "nan 1 1"})
        EXPECT_FALSE(ProcLoadavg::parse(text)) << text;
}

TEST(ProcSwaps, areMemoryOnlyWhenEveryAreaIs) {
    const std::string head = "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n";
    const std::string zram = "/dev/zram0                              partition\t1024\t0\t100\n";
    EXPECT_TRUE(ProcSwaps::areAllMemory(head + zram));
    EXPECT_TRUE(ProcSwaps::areAllMemory(head + zram + "/dev/zram1 partition 1 0 1"));
    EXPECT_FALSE(ProcSwaps::areAllMemory(head + zram + "/swapfile file 1 0 1\n"));
    for (const std::string& none : {std::string(), head, zram, std::string("\n")})
        EXPECT_FALSE(ProcSwaps::areAllMemory(none)) << none;
}

TEST(ProcUptime, isTheFirstOfTheTwo) {
    EXPECT_EQ(ProcUptime::parse("17421.55 243210.11\n"), 17421.55);
    for (const char* text : {"", "\n", "-1 5", "x 5"})
        EXPECT_FALSE(ProcUptime::parse(text)) << text;
}

} // namespace ostrivane
