#pragma once

#include "core/sampling/platform/Machine.hpp"
#include "core/sampling/platform/macos/MacGraphics.hpp"
#include "core/sampling/platform/macos/MacHost.hpp"
#include "core/sampling/platform/macos/MacMemory.hpp"
#include "core/sampling/platform/macos/MacProcessor.hpp"

namespace ostrivane {

/// The Mac that the program runs on.
class MacMachine final : public Machine {
public:
    Host& host() override { return hostReader; }
    Processor& processor() override { return processorReader; }
    Memory& memory() override { return memoryReader; }
    Graphics& graphics() override { return graphicsReader; }

private:
    HostPort port; // before the readers that ask through it
    MacHost hostReader{port};
    MacProcessor processorReader{port};
    MacMemory memoryReader{port};
    MacGraphics graphicsReader;
};

} // namespace ostrivane
