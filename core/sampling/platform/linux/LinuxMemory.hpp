#pragma once

#include "core/sampling/platform/Memory.hpp"
#include "core/sampling/platform/Vmstat.hpp"
#include "core/sampling/platform/linux/KeptFile.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace ostrivane {

/// Memory as /proc and /sys tell about it.
class LinuxMemory final : public Memory {
public:
    /// `folder` must outlive the memory; `bytesPerPage` is the kernel's page size.
    LinuxMemory(const RootFolder& folder, std::uint64_t bytesPerPage);

    std::optional<MemoryReading> reading() override;

private:
    /// A block device that lives compressed in memory.
    struct CompressedDevice {
        std::string name;
        KeptFile state;
        KeptFile usage;
    };

    void findDevices();
    std::uint64_t takenByDevices();

    const RootFolder& root;
    std::uint64_t pageSize;
    KeptFile meminfo;
    KeptFile vmstat;
    KeptFile pressure;
    KeptFile arcstats;
    KeptFile swaps;
    std::vector<CompressedDevice> devices;
    int readingsToSearch = 0;
    Vmstat::SwapTraffic swapTraffic; ///< the last known: counters that fell to 0 would come back as a burst
};

} // namespace ostrivane
