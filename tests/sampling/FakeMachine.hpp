#pragma once

#include "core/sampling/platform/Machine.hpp"

namespace ostrivane {

/// A machine that answers what a test has set.
class FakeMachine final : public Machine, Host, Processor, Memory, Graphics {
public:
    Host& host() override { return *this; }
    Processor& processor() override { return *this; }
    Memory& memory() override { return *this; }
    Graphics& graphics() override { return *this; }

    HostInfo info() override { return hostInfo; }
    std::optional<double> uptime() override { return upSeconds; }
    std::optional<CPUTicks> ticks() override { return cpuTicks; }
    std::optional<LoadAverage> loadAverage() override { return load; }
    std::optional<MemoryReading> reading() override { return memoryReading; }
    std::vector<AcceleratorReading> accelerators() override { return chips; }
    PidMap<std::uint64_t> processTimes() override { return graphicsTimes; }
    void setPageShown(bool shown) override { graphicsPageShown = shown; }

    HostInfo hostInfo;
    std::optional<double> upSeconds;
    std::optional<CPUTicks> cpuTicks;
    std::optional<LoadAverage> load;
    std::optional<MemoryReading> memoryReading;
    std::vector<AcceleratorReading> chips;
    PidMap<std::uint64_t> graphicsTimes;
    bool graphicsPageShown = false;
};

} // namespace ostrivane
