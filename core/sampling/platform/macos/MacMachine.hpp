#pragma once

#include "core/sampling/platform/ChildCommands.hpp"
#include "core/sampling/platform/LocalFiles.hpp"
#include "core/sampling/platform/Machine.hpp"
#include "core/sampling/platform/macos/MacApplications.hpp"
#include "core/sampling/platform/macos/MacGraphics.hpp"
#include "core/sampling/platform/macos/MacHost.hpp"
#include "core/sampling/platform/macos/MacMemory.hpp"
#include "core/sampling/platform/macos/MacProcesses.hpp"
#include "core/sampling/platform/macos/MacProcessor.hpp"
#include "core/sampling/platform/macos/MacSockets.hpp"
#include "core/sampling/platform/macos/MacSystemProcesses.hpp"

namespace ostrivane {

/// The Mac that the program runs on.
class MacMachine final : public Machine {
public:
    Platform platform() const override { return Platform::macOS; }

    Host& host() override { return hostReader; }
    Processor& processor() override { return processorReader; }
    Memory& memory() override { return memoryReader; }
    Graphics& graphics() override { return graphicsReader; }
    Processes& processes() override { return processReader; }
    SystemProcesses& systemProcesses() override { return systemProcessReader; }
    Sockets& sockets() override { return socketReader; }
    Applications& applications() override { return applicationReader; }
    Files& files() override { return fileReader; }

private:
    HostPort port; // before the readers that ask through it
    ChildCommands tools;
    MacHost hostReader{port};
    MacProcessor processorReader{port};
    MacMemory memoryReader{port};
    MacGraphics graphicsReader;
    MacProcesses processReader;
    MacSystemProcesses systemProcessReader{tools};
    MacSockets socketReader{tools};
    MacApplications applicationReader;
    LocalFiles fileReader;
};

} // namespace ostrivane
