#pragma once

#include "core/sampling/platform/Graphics.hpp"

namespace ostrivane {

class MacGraphics final : public Graphics {
public:
    std::vector<AcceleratorReading> accelerators() override;
    PidMap<std::uint64_t> processTimes() override;
};

} // namespace ostrivane
