#pragma once

#include "core/sampling/platform/Graphics.hpp"
#include "core/sampling/platform/NVML.hpp"
#include "core/sampling/platform/linux/PCINames.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// The chips under NVIDIA's own driver, which tells its figures through its own library alone.
///
/// Where a chip may go to sleep (power/control is "auto"), the library is opened only while the page on graphics is
/// shown and all such chips are awake, and closed at once after each reading: open, it would keep them awake for good.
/// Else it stays open.
class NVIDIAChips {
public:
    using LoadLibrary = std::function<std::optional<NVMLLibrary>()>;

    /// `folder` must outlive it. `loadLibrary` is called once, when there is a chip to ask.
    NVIDIAChips(const RootFolder& folder, LoadLibrary loadLibrary) : root(folder), load(std::move(loadLibrary)) {}

    /// The chips at `now`, in seconds. By the library where it may be asked; else by what sysfs tells of them.
    std::vector<AcceleratorReading> accelerators(double now, bool pageShown);

    /// Nanoseconds by process. What is not known from `accelerators` is asked here.
    const PidMap<std::uint64_t>& processTimes(double now);

private:
    struct Chip {
        std::string address;
        std::optional<std::string> name;
        bool canSleep = false;
        bool isAsleep = false;
    };

    void findChips();
    std::vector<AcceleratorReading> asSysfsTells() const;
    /// The library, open; null when it may not be opened now, or does not open.
    NVML* opened(bool pageShown);
    bool canSleep() const;

    const RootFolder& root;
    LoadLibrary load;
    bool isLoaded = false;
    std::optional<NVML> library;
    int resting = 0; ///< readings until a library that did not open is tried again
    std::vector<Chip> chips;
    PidMap<std::uint64_t> none;
};

} // namespace ostrivane
