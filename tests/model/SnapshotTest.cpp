#include "core/model/SystemSnapshot.hpp"

#include "core/model/DisplayUnits.hpp"
#include "core/model/RecordHash.hpp"
#include "tests/model/FilledRecord.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <set>
#include <string>
#include <string_view>

namespace ostrivane {

namespace {

SystemSnapshot withPowers(std::initializer_list<std::optional<double>> watts) {
    SystemSnapshot snapshot;
    for (const auto& powerW : watts)
        snapshot.applications.push_back({.powerW = powerW});
    return snapshot;
}

/// A member that the hash or the comparison leaves out shows here.
template <class Record>
void expectEveryMemberCounts() {
    const RecordHash hash;
    const auto filled = filledRecord<Record>();
    EXPECT_EQ(hash(filled), hash(Record(filled)));
    boost::mp11::mp_for_each<boost::describe::describe_members<Record, boost::describe::mod_any_access>>(
        [&](auto member) {
            Record changed = filled;
            changed.*member.pointer = Record{}.*member.pointer;
            EXPECT_FALSE(changed == filled) << member.name;
            EXPECT_NE(hash(changed), hash(filled)) << member.name;
        });
}

template <class Enum>
void expectTextsLeadBack() {
    std::set<std::string_view> texts;
    for (const auto& [value, text] : rawTexts(EnumTag<Enum>{})) {
        EXPECT_EQ(fromRawValue<Enum>(rawValue(value)), value) << text;
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), rawTexts(EnumTag<Enum>{}).size());
    EXPECT_FALSE(fromRawValue<Enum>("no case"));
    EXPECT_FALSE(fromRawValue<Enum>(""));
}

} // namespace

TEST(Snapshot, addsPowerOnlyWhereItWasReported) {
    EXPECT_EQ(withPowers({}).totalAppPower(), std::nullopt);
    EXPECT_EQ(withPowers({std::nullopt, std::nullopt}).totalAppPower(), std::nullopt);
    EXPECT_EQ(withPowers({0.0}).totalAppPower(), 0.0);
    EXPECT_EQ(withPowers({1.5, std::nullopt, 2.0}).totalAppPower(), 3.5);
}

TEST(Snapshot, fractionsStayWithinTheirBounds) {
    const auto pressure = [](std::int64_t available) {
        return MemorySnapshot{.availablePercent = available}.pressurePercent();
    };
    EXPECT_EQ(pressure(37), 63);
    EXPECT_EQ(pressure(140), 0);
    EXPECT_EQ(pressure(-5), 100);
    EXPECT_EQ(pressure(std::numeric_limits<std::int64_t>::min()), 100); // the difference would overflow

    EXPECT_EQ((MemorySnapshot{.total = 8, .used = 2}.usedFraction()), 0.25);
    EXPECT_EQ(MemorySnapshot{.used = 2}.usedFraction(), 0);
    EXPECT_EQ((VolumeInfo{.total = 100, .available = 25}.usedFraction()), 0.75);
    EXPECT_EQ((VolumeInfo{.total = 100, .available = 101}.used()), 0U);
    EXPECT_EQ(VolumeInfo{}.usedFraction(), 0);

    const auto fan = [](double rpm, std::optional<double> low, std::optional<double> high) {
        return FanReading{.rpm = rpm, .minRPM = low, .maxRPM = high}.fraction();
    };
    EXPECT_EQ(fan(2000, 1000, 5000), 0.25);
    EXPECT_EQ(fan(9000, 1000, 5000), 1);
    EXPECT_EQ(fan(0, 1000, 5000), 0);
    for (const auto absent : {fan(1000, 1000, 1000), fan(1000, 5000, 1000), fan(1000, {}, 5000), fan(1000, 0, {})})
        EXPECT_EQ(absent, std::nullopt);
}

TEST(Snapshot, findsTheFirstRootVolumeAndPrimaryInterface) {
    EXPECT_FALSE(DiskSnapshot{}.root());
    EXPECT_FALSE(NetworkSnapshot{.interfaces = {{.name = "lo"}}}.primary());
    const DiskSnapshot disk{.volumes = {{.name = "a"}, {.name = "b", .isRoot = true}, {.name = "c", .isRoot = true}}};
    EXPECT_EQ(disk.root().value().name, "b");
    const NetworkSnapshot network{
        .interfaces = {{.name = "a"}, {.name = "b", .isPrimary = true}, {.name = "c", .isPrimary = true}}};
    EXPECT_EQ(network.primary().value().name, "b");
}

TEST(Snapshot, tellsLoopbackFromWildcardAddresses) {
    const auto at = [](std::string address) { return ListeningPort{.address = std::move(address)}; };
    for (const char* address : {"127.0.0.1", "::1", "localhost", "localhost6.localdomain6"})
        EXPECT_TRUE(at(address).isLoopback() && !at(address).isWildcard()) << address;
    for (const char* address : {"*", "0.0.0.0", "::"})
        EXPECT_TRUE(!at(address).isLoopback() && at(address).isWildcard()) << address;
    for (const char* address : {"", "192.168.1.7", "127.0.0.11", "my-localhost", "::ffff:0.0.0.0"})
        EXPECT_FALSE(at(address).isLoopback() || at(address).isWildcard()) << address;
}

TEST(Snapshot, identifiesListEntries) {
    EXPECT_EQ((ListeningPort{.port = 65535, .address = "::1", .proto = "tcp6", .pid = 42}.id()), "tcp6-::1-65535-42");
    EXPECT_EQ((NetworkConnection{.pid = 7, .localPort = 50000, .remoteAddress = "10.0.0.2", .remotePort = 443}.id()),
              "7-50000-10.0.0.2-443");
    EXPECT_EQ((BluetoothDevice{.name = "Mouse", .address = "aa:bb"}.id()), "aa:bb");
    EXPECT_EQ(BluetoothDevice{.name = "Mouse"}.id(), "Mouse");
}

TEST(Snapshot, knowsUptimeOnlyWithAStart) {
    EXPECT_EQ(ProcessSnapshot{}.uptime(Date{100}), std::nullopt);
    EXPECT_EQ(ProcessSnapshot{.startTime = Date{40}}.uptime(Date{100}), 60);
    EXPECT_EQ((ApplicationSnapshot{.pids = {4, 5, 6}}.processCount()), 3);
}

TEST(Snapshot, takesNoZerosOfARestrictedProcessForReadings) {
    ProcessSnapshot process{.cpu = 0.5, .memory = 2048};
    EXPECT_EQ(process.knownCPU(), 0.5);
    EXPECT_EQ(process.knownMemory(), 2048U);
    process.isRestricted = true;
    EXPECT_EQ(process.knownCPU(), std::nullopt);
    EXPECT_EQ(process.knownMemory(), std::nullopt);
    process.memoryIsRSS = true; // a tool of the system told both
    EXPECT_EQ(process.knownCPU(), 0.5);
    EXPECT_EQ(process.knownMemory(), 2048U);
}

TEST(Snapshot, startsFromConstantsThatClaimNothing) {
    EXPECT_EQ(CPUSnapshot::empty.idle, 1);
    EXPECT_EQ(CPUSnapshot::empty.usage, 0);
    EXPECT_EQ(MemorySnapshot::empty.availablePercent, 100);
    EXPECT_EQ(MemorySnapshot::empty.pressure, MemoryPressure::normal);
    EXPECT_EQ(GPUSnapshot::empty.name, "GPU");
    EXPECT_EQ(GPUSnapshot::empty.utilization, std::nullopt);
    EXPECT_EQ(BatterySnapshot::absent.state, BatterySnapshot::State::acNotCharging);
    EXPECT_TRUE(BatterySnapshot::absent.onAC);
    EXPECT_FALSE(BatterySnapshot::absent.isPresent);
    EXPECT_EQ(ThermalSnapshot::empty.state, ThermalLevel::nominal);
    EXPECT_FALSE(DockerStatus::unavailable.reachable);
    EXPECT_EQ(ProcessSnapshot{}.appKey, "system");

    const SystemSnapshot empty = SystemSnapshot::empty(Date{5});
    EXPECT_EQ(empty.timestamp, Date{5});
    EXPECT_EQ(empty.cpu, CPUSnapshot::empty);
    EXPECT_EQ(empty.battery, BatterySnapshot::absent);
    EXPECT_EQ(empty.bluetoothUpdated, std::nullopt);
    EXPECT_EQ(empty.docker, std::nullopt);
    EXPECT_EQ(empty.macModel, "Mac");
    EXPECT_EQ(empty.macModelIdentifier, "");
}

TEST(Snapshot, ordersLevelsByGravity) {
    EXPECT_LT(MemoryPressure::normal, MemoryPressure::warning);
    EXPECT_LT(MemoryPressure::warning, MemoryPressure::critical);
    EXPECT_LT(ThermalLevel::nominal, ThermalLevel::fair);
    EXPECT_LT(ThermalLevel::fair, ThermalLevel::serious);
    EXPECT_LT(ThermalLevel::serious, ThermalLevel::critical);
    EXPECT_EQ(fromRawValue<MemoryPressure>(1), MemoryPressure::warning);
    EXPECT_EQ(fromRawValue<ThermalLevel>(3), ThermalLevel::critical);
    for (const long long raw : {-1LL, 3LL, 4294967296LL})
        EXPECT_FALSE(fromRawValue<MemoryPressure>(raw)) << raw;
    EXPECT_FALSE(fromRawValue<ThermalLevel>(4));
}

TEST(Snapshot, wordsWhatAPersonReads) {
    EXPECT_EQ(label(MemoryPressure::warning), "Elevated");
    EXPECT_EQ(label(MemoryPressure::critical), "Critical");
    EXPECT_EQ(label(ThermalLevel::serious), "Serious");
    EXPECT_EQ(rawValue(BatterySnapshot::State::discharging), "On Battery");
    EXPECT_EQ(rawValue(BatterySnapshot::State::acNotCharging), "Not Charging");
    EXPECT_EQ(rawValue(InterfaceStats::Kind::wifi), "Wi-Fi");
    EXPECT_EQ(rawValue(SensorReading::Group::cpuEfficiency), "CPU (E-cores)");
    EXPECT_EQ(rawValue(CPUScale::perMac), "perMac");
}

TEST(Snapshot, leadsFromRawTextsBackToCases) {
    expectTextsLeadBack<CoreLoad::Kind>();
    expectTextsLeadBack<InterfaceStats::Kind>();
    expectTextsLeadBack<BatterySnapshot::State>();
    expectTextsLeadBack<SensorReading::Group>();
    expectTextsLeadBack<TemperatureUnit>();
    expectTextsLeadBack<RateUnit>();
    expectTextsLeadBack<CPUScale>();
}

TEST(Snapshot, comparesAndHashesEveryMember) {
    expectEveryMemberCounts<SystemSnapshot>();
    expectEveryMemberCounts<CPUSnapshot>();
    expectEveryMemberCounts<CoreLoad>();
    expectEveryMemberCounts<MemorySnapshot>();
    expectEveryMemberCounts<BatterySnapshot>();
    expectEveryMemberCounts<ThermalSnapshot>();
    expectEveryMemberCounts<InterfaceStats>();
    expectEveryMemberCounts<ProcessSnapshot>();
    expectEveryMemberCounts<ApplicationSnapshot>();
    expectEveryMemberCounts<ProjectSnapshot>();
    expectEveryMemberCounts<AIWorkload>();
    expectEveryMemberCounts<DockerContainer>();

    const RecordHash hash;
    EXPECT_EQ(hash(DiskSnapshot{.readBytesPerSec = -0.0}), hash(DiskSnapshot{})); // equal, so alike
    EXPECT_NE(hash(BluetoothDevice{.battery = 0}), hash(BluetoothDevice{}));      // a zero is not absence
}

} // namespace ostrivane
