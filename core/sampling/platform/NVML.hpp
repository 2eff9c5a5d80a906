#pragma once

#include "core/model/PidMap.hpp"
#include "core/sampling/platform/Graphics.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace ostrivane {

/// The functions that are called of NVIDIA's management library, with types of our own: the library is looked for while
/// the program runs and its headers are never needed. Each answers 0 or the number of an error.
struct NVMLLibrary {
    using Device = void*;
    struct Utilization { ///< percent
        unsigned chip = 0;
        unsigned memory = 0;
    };
    struct Memory { ///< bytes
        std::uint64_t total = 0;
        std::uint64_t free = 0;
        std::uint64_t used = 0;
    };
    /// How busy one process kept the chip, in percent, over the time up to `at`.
    struct ProcessSample {
        unsigned pid = 0;
        std::uint64_t atMicros = 0;
        unsigned compute = 0;
        unsigned memory = 0;
        unsigned encoder = 0;
        unsigned decoder = 0;
    };
    static_assert(sizeof(ProcessSample) == 32 && sizeof(Memory) == 24 && sizeof(Utilization) == 8);

    int (*init)() = nullptr;
    int (*shutdown)() = nullptr;
    int (*deviceCount)(unsigned*) = nullptr;
    int (*deviceByIndex)(unsigned, Device*) = nullptr;
    int (*name)(Device, char*, unsigned) = nullptr;     ///< may be missing
    int (*utilization)(Device, Utilization*) = nullptr; ///< may be missing
    int (*memory)(Device, Memory*) = nullptr;           ///< may be missing
    int (*processSamples)(Device, ProcessSample*, unsigned*,
                          std::uint64_t lastSeenMicros) = nullptr; ///< may be missing

    /// The functions by what `symbol` finds under a name, null for nothing. Absent when one is missing without which
    /// nothing can be asked.
    static std::optional<NVMLLibrary> find(const std::function<void*(const char*)>& symbol);
};

/// A conversation with the library. While it is open, the driver's devices are held open too, which keeps the chips of
/// a laptop awake.
class NVML {
public:
    explicit NVML(const NVMLLibrary& found) : library(found) {}
    NVML(const NVML&) = delete;
    NVML& operator=(const NVML&) = delete;
    ~NVML() { close(); }

    /// Opens it unless it is open. False when that fails; for good when the library and the driver in the kernel are of
    /// different versions, after an update in place.
    bool open();
    void close();

    bool isOpen() const { return isOpened; }

    /// The chips, without those that do not answer. Only while open.
    std::vector<AcceleratorReading> accelerators();

    /// Adds what processes did since the last time, at `now` in seconds. Only while open.
    void sampleProcesses(double now);
    /// Instead of a sampling that is left out: what happened up to `now` is not made up for later.
    void skipProcesses(double now) { lastSampled = now; }

    /// Nanoseconds by process since it was first seen busy, of processes of all users.
    const PidMap<std::uint64_t>& processTimes() const { return times; }
    /// Drops the processes that have ended.
    void forgetProcesses(const std::function<bool(std::int32_t)>& lives);

private:
    /// Passes the result of a call on as success or failure, and notes when there is no sense in further calls.
    bool succeeded(int result);
    std::vector<NVMLLibrary::Device> devices();
    AcceleratorReading reading(NVMLLibrary::Device device);
    std::vector<NVMLLibrary::ProcessSample> samples(NVMLLibrary::Device device, std::uint64_t since);
    void sampleDevice(unsigned index, NVMLLibrary::Device device, double elapsed);

    NVMLLibrary library;
    bool isOpened = false;
    bool isUnusable = false;
    std::optional<double> lastSampled;                                    ///< seconds
    std::map<unsigned, std::uint64_t> lastSeen;                           ///< by chip; microseconds
    std::map<std::pair<unsigned, std::int32_t>, std::uint64_t> sampledAt; ///< by chip and process; microseconds
    PidMap<std::uint64_t> times;
};

} // namespace ostrivane
