#include "core/sampling/platform/NVML.hpp"

#include "core/model/Saturating.hpp"
#include "core/model/Text.hpp"

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

enum Result { success = 0, insufficientSize = 7, versionMismatch = 18 };

constexpr unsigned largestDeviceCount = 64;
constexpr unsigned largestSampleCount = 8192; // 256 KiB
constexpr unsigned spareSamples = 16;         // for who began between the two calls
constexpr double nanosPerSecond = 1e9;
constexpr double nanosPerMicro = 1e3;

template <class Function>
void look(const std::function<void*(const char*)>& symbol, const char* name, Function& function) {
    function = reinterpret_cast<Function>(symbol(name));
}

} // namespace

std::optional<NVMLLibrary> NVMLLibrary::find(const std::function<void*(const char*)>& symbol) {
    NVMLLibrary found;
    look(symbol, "nvmlInit_v2", found.init);
    look(symbol, "nvmlShutdown", found.shutdown);
    look(symbol, "nvmlDeviceGetCount_v2", found.deviceCount);
    look(symbol, "nvmlDeviceGetHandleByIndex_v2", found.deviceByIndex);
    look(symbol, "nvmlDeviceGetName", found.name);
    look(symbol, "nvmlDeviceGetUtilizationRates", found.utilization);
    look(symbol, "nvmlDeviceGetMemoryInfo", found.memory);
    look(symbol, "nvmlDeviceGetProcessUtilization", found.processSamples);
    const bool usable = found.init && found.shutdown && found.deviceCount && found.deviceByIndex;
    return usable ? std::optional(found) : std::nullopt;
}

bool NVML::succeeded(int result) {
    isUnusable = isUnusable || result == versionMismatch;
    return result == success;
}

bool NVML::open() {
    if (isUnusable)
        close();
    else if (!isOpened)
        isOpened = succeeded(library.init());
    return isOpened;
}

void NVML::close() {
    if (isOpened)
        library.shutdown();
    isOpened = false;
}

std::vector<NVMLLibrary::Device> NVML::devices() {
    unsigned count = 0;
    std::vector<NVMLLibrary::Device> found;
    if (!isOpened || !succeeded(library.deviceCount(&count)))
        return found;
    for (unsigned index = 0; index < std::min(count, largestDeviceCount); ++index) {
        NVMLLibrary::Device device = nullptr;
        found.push_back(succeeded(library.deviceByIndex(index, &device)) ? device : nullptr);
    }
    return found;
}

AcceleratorReading NVML::reading(NVMLLibrary::Device device) {
    AcceleratorReading reading{.name = std::nullopt, .statistics = AcceleratorStatistics{}};
    std::array<char, 97> name{}; // the library's limit is 96; the last zero is ours
    if (library.name && succeeded(library.name(device, name.data(), name.size() - 1)) && name[0] != '\0')
        reading.name = Text::repaired(name.data());
    NVMLLibrary::Utilization utilization;
    if (library.utilization && succeeded(library.utilization(device, &utilization)) && utilization.chip <= 100)
        reading.statistics->devicePercent = utilization.chip;
    NVMLLibrary::Memory memory;
    if (library.memory && succeeded(library.memory(device, &memory)))
        reading.statistics->memoryInUse = memory.used;
    return reading;
}

std::vector<AcceleratorReading> NVML::accelerators() {
    std::vector<AcceleratorReading> found;
    for (const NVMLLibrary::Device device : devices())
        if (device)
            found.push_back(reading(device));
    return found;
}

/// What was measured since `since`, in microseconds, the newest of each process. When nobody was busy that is an error
/// of its own, and when more were than a moment ago another; both give nothing, and the next time has all of it.
std::vector<NVMLLibrary::ProcessSample> NVML::samples(NVMLLibrary::Device device, std::uint64_t since) {
    unsigned count = 0;
    const int counted = library.processSamples(device, nullptr, &count, since);
    if (!succeeded(counted) && counted != insufficientSize)
        return {};
    std::vector<NVMLLibrary::ProcessSample> all(std::min(count, largestSampleCount) + spareSamples);
    count = static_cast<unsigned>(all.size());
    if (!succeeded(library.processSamples(device, all.data(), &count, since)))
        return {};
    all.resize(std::min<std::size_t>(count, all.size()));
    std::ranges::sort(
        all, [](const auto& a, const auto& b) { return a.pid != b.pid ? a.pid < b.pid : a.atMicros > b.atMicros; });
    all.erase(std::unique(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.pid == b.pid; }),
              all.end());
    return all;
}

/// A sample speaks of the time since the one before. After a pause without any it does not: then it counts for the time
/// since the last look, `elapsed` seconds ago, at most.
void NVML::sampleDevice(unsigned index, NVMLLibrary::Device device, double elapsed) {
    std::uint64_t& newest = lastSeen[index];
    for (const NVMLLibrary::ProcessSample& sample : samples(device, newest)) {
        const auto pid = static_cast<std::int32_t>(sample.pid);
        if (pid <= 0)
            continue;
        newest = std::max(newest, sample.atMicros);
        std::uint64_t& total = times[pid];
        const auto [before, isNew] = sampledAt.try_emplace({index, pid}, sample.atMicros);
        const double since = static_cast<double>(flooredDifference(sample.atMicros, before->second)) * nanosPerMicro;
        before->second = std::max(before->second, sample.atMicros);
        if (isNew || sample.compute > 100) // some drivers give nonsense at first
            continue;
        const double nanos = std::min(since, elapsed * nanosPerSecond) * sample.compute / 100;
        total = saturatingSum(total, static_cast<std::uint64_t>(std::max(nanos, 0.0)));
    }
}

void NVML::sampleProcesses(double now) {
    const double elapsed = lastSampled ? now - *lastSampled : 0;
    lastSampled = now;
    if (!library.processSamples)
        return;
    const auto known = devices();
    for (unsigned index = 0; index < known.size(); ++index)
        if (known[index])
            sampleDevice(index, known[index], elapsed);
}

void NVML::forgetProcesses(const std::function<bool(std::int32_t)>& lives) {
    erase_if(times, [&lives](const auto& each) { return !lives(each.first); });
    std::erase_if(sampledAt, [this](const auto& each) { return !times.contains(each.first.second); });
}

} // namespace ostrivane
