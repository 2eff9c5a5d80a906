#include "core/sampling/platform/linux/LinuxMemory.hpp"

#include "core/model/Saturating.hpp"
#include "core/model/Text.hpp"
#include "core/sampling/platform/ARCStats.hpp"
#include "core/sampling/platform/MemoryFigures.hpp"
#include "core/sampling/platform/ProcSwaps.hpp"
#include "core/sampling/platform/ZRAMStat.hpp"

#include <algorithm>

namespace ostrivane {

namespace {

/// The list of block devices is read this seldom: devices of this kind are set up once, when the system starts.
constexpr int readingsPerSearch = 30;

} // namespace

LinuxMemory::LinuxMemory(const RootFolder& folder, std::uint64_t bytesPerPage)
    : root(folder), pageSize(bytesPerPage), meminfo(folder, "proc/meminfo"), vmstat(folder, "proc/vmstat"),
      pressure(folder, "proc/pressure/memory", KeptFile::Presence::optional),
      arcstats(folder, "proc/spl/kstat/zfs/arcstats", KeptFile::Presence::optional),
      swaps(folder, "proc/swaps", KeptFile::Presence::optional) {}

std::optional<MemoryReading> LinuxMemory::reading() {
    const auto info = meminfo.read();
    if (!info)
        return std::nullopt;
    MemoryFigures figures;
    figures.meminfo = Meminfo::parse(*info);
    if (const auto text = vmstat.read())
        swapTraffic = Vmstat::parse(*text).value_or(swapTraffic);
    figures.swapTraffic = swapTraffic;
    if (const auto text = pressure.read())
        figures.pressure = PressureStall::parse(*text);
    if (const auto text = arcstats.read())
        figures.reclaimableFileCache = ARCStats::reclaimable(*text).value_or(0);
    figures.zram = takenByDevices();
    if (!devices.empty())
        if (const auto text = swaps.read())
            figures.swapIsMemory = ProcSwaps::areAllMemory(*text);
    return figures.reading(pageSize);
}

std::uint64_t LinuxMemory::takenByDevices() {
    if (readingsToSearch-- == 0)
        findDevices();
    std::uint64_t taken = 0;
    for (CompressedDevice& device : devices) {
        const auto state = device.state.read();
        if (!state || Text::trimmed(*state) != "1") // not set up: it has no size yet
            continue;
        if (const auto text = device.usage.read())
            taken = saturatingSum(taken, ZRAMStat::memoryUsed(*text).value_or(0));
    }
    return taken;
}

void LinuxMemory::findDevices() {
    readingsToSearch = readingsPerSearch;
    std::vector<CompressedDevice> found;
    for (const std::string& name : root.list("sys/block")) {
        if (!name.starts_with("zram"))
            continue;
        const auto known = std::find_if(devices.begin(), devices.end(),
                                        [&](const CompressedDevice& device) { return device.name == name; });
        if (known != devices.end())
            found.push_back(std::move(*known));
        else
            found.push_back({name, KeptFile(root, "sys/block/" + name + "/initstate"),
                             KeptFile(root, "sys/block/" + name + "/mm_stat")});
    }
    devices = std::move(found);
}

} // namespace ostrivane
