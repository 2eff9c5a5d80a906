#pragma once

#include "core/sampling/platform/Processor.hpp"
#include "core/sampling/platform/linux/KeptFile.hpp"

#include <cstddef>

namespace ostrivane {

/// The processor as /proc tells about it.
class LinuxProcessor final : public Processor {
public:
    /// `folder` must outlive the processor.
    explicit LinuxProcessor(const RootFolder& folder);

    std::optional<CPUTicks> ticks() override;
    std::optional<LoadAverage> loadAverage() override;

private:
    KeptFile stat;
    KeptFile loadavg;
    std::size_t coreLimit;
    std::size_t coresSeen = 0;
};

} // namespace ostrivane
