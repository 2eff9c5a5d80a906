#include "tests/app/model/DayPlayer.hpp"

namespace ostrivane {

// The described members are those of the recording; the counters have no description of their own.
struct RecordedDiskCounters {
    std::uint64_t read = 0;
    std::uint64_t written = 0;
};
BOOST_DESCRIBE_STRUCT(RecordedDiskCounters, (), (read, written))

std::optional<DiskCounters> DayCollectors::diskCounters() {
    const auto counters = playback->answer<RecordedDiskCounters>("day.diskCounters");
    return counters ? std::optional(DiskCounters{counters->read, counters->written}) : std::nullopt;
}

std::optional<std::vector<VolumeInfo>> DayCollectors::volumes() {
    return playback->answer<std::vector<VolumeInfo>>("day.volumes");
}

BatterySnapshot DayCollectors::battery(const std::optional<BatteryHealth>& /*health*/) {
    return playback->answer<BatterySnapshot>("day.battery").value_or(BatterySnapshot::absent);
}

ThermalSnapshot DayCollectors::thermal() {
    return playback->answer<ThermalSnapshot>("day.thermal").value_or(ThermalSnapshot::empty);
}

std::vector<DevServer> DayCollectors::devServers(const ProcessOutput& /*output*/,
                                                 const std::vector<ListeningPort>& /*ports*/, double /*idleThreshold*/,
                                                 double /*now*/) {
    return playback->answer<std::vector<DevServer>>("day.devServers").value_or(std::vector<DevServer>());
}

} // namespace ostrivane
