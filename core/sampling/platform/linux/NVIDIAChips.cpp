#include "core/sampling/platform/linux/NVIDIAChips.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/linux/RuntimePower.hpp"

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

const std::string driverFolder = "sys/bus/pci/drivers/nvidia/";
constexpr int restingReadings = 30;

} // namespace

/// The driver's folder has a link for each of its chips, named by the address on the bus, beside files of its own.
void NVIDIAChips::findChips() {
    std::vector<Chip> found;
    for (const std::string& name : root.list(driverFolder)) {
        if (name.find(':') == std::string::npos)
            continue;
        const std::string folder = driverFolder + name;
        const auto known = std::ranges::find(chips, name, &Chip::address);
        Chip chip = known == chips.end() ? Chip{.address = name, .name = PCINames(root).name(folder)} : *known;
        const std::string control = root.read(folder + "/power/control").value_or("");
        chip.canSleep = Text::trimmed(control) == "auto";
        chip.isAsleep = sleeps(root.read(folder + "/power/runtime_status").value_or(""));
        found.push_back(std::move(chip));
    }
    std::ranges::sort(found, {}, &Chip::address);
    chips = std::move(found);
}

std::vector<AcceleratorReading> NVIDIAChips::asSysfsTells() const {
    std::vector<AcceleratorReading> found;
    for (const Chip& chip : chips) {
        AcceleratorReading reading{.name = chip.name, .statistics = AcceleratorStatistics{}};
        if (chip.isAsleep)
            reading.statistics->devicePercent = 0;
        found.push_back(std::move(reading));
    }
    return found;
}

bool NVIDIAChips::canSleep() const {
    return std::ranges::any_of(chips, &Chip::canSleep);
}

NVML* NVIDIAChips::opened(bool pageShown) {
    const bool anyAsleep = std::ranges::any_of(chips, &Chip::isAsleep);
    const bool mayOpen = !anyAsleep && (pageShown || !canSleep());
    if (chips.empty() || !mayOpen) {
        if (library)
            library->close();
        return nullptr;
    }
    if (!std::exchange(isLoaded, true))
        if (const auto found = load())
            library.emplace(*found);
    if (!library || (resting > 0 && --resting > 0))
        return nullptr;
    if (!library->open()) {
        resting = restingReadings;
        return nullptr;
    }
    return &*library;
}

std::vector<AcceleratorReading> NVIDIAChips::accelerators(double now, bool pageShown) {
    findChips();
    NVML* asked = opened(pageShown);
    auto found = asked ? asked->accelerators() : std::vector<AcceleratorReading>();
    if (library && canSleep()) {
        if (asked)
            library->sampleProcesses(now);
        else
            library->skipProcesses(now);
        library->close();
    }
    return found.empty() ? asSysfsTells() : found;
}

const PidMap<std::uint64_t>& NVIDIAChips::processTimes(double now) {
    if (!library)
        return none;
    if (library->isOpen())
        library->sampleProcesses(now);
    else if (!canSleep())
        library->skipProcesses(now);
    library->forgetProcesses([this](std::int32_t pid) { return root.exists("proc/" + std::to_string(pid)); });
    return library->processTimes();
}

} // namespace ostrivane
