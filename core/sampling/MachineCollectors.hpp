#pragma once

#include "core/sampling/Collectors.hpp"
#include "core/sampling/GPUCollector.hpp"
#include "core/sampling/platform/Machine.hpp"

#include <memory>
#include <string>

namespace ostrivane {

/// The collectors over one machine.
class MachineCollectors final : public Collectors {
public:
    explicit MachineCollectors(std::unique_ptr<Machine> asked) : machine(std::move(asked)) {}

    HostInfo hostInfo() override {
        HostInfo info = machine->host().info();
        cpuBrand = info.cpuBrand;
        return info;
    }
    std::optional<CPUTicks> cpuTicks() override { return machine->processor().ticks(); }
    std::optional<LoadAverage> loadAverage() override { return machine->processor().loadAverage(); }
    std::optional<double> uptime() override { return machine->host().uptime(); }
    std::optional<MemoryReading> memory() override { return machine->memory().reading(); }
    GPUSnapshot gpu(bool pageShown) override {
        machine->graphics().setPageShown(pageShown);
        return GPUCollector::read(machine->graphics().accelerators(), cpuBrand);
    }

private:
    std::unique_ptr<Machine> machine;
    std::string cpuBrand = HostInfo{}.cpuBrand; ///< known once `hostInfo` was asked, which comes first
};

} // namespace ostrivane
