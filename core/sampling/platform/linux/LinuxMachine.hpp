#pragma once

#include "core/sampling/platform/Machine.hpp"
#include "core/sampling/platform/linux/LinuxGraphics.hpp"
#include "core/sampling/platform/linux/LinuxHost.hpp"
#include "core/sampling/platform/linux/LinuxMemory.hpp"
#include "core/sampling/platform/linux/LinuxProcessor.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <filesystem>

namespace ostrivane {

/// A Linux machine: the one that the program runs on, or one whose files lie under another folder.
class LinuxMachine final : public Machine {
public:
    explicit LinuxMachine(const std::filesystem::path& path = "/");

    Host& host() override { return hostAnswers; }
    Processor& processor() override { return processorAnswers; }
    Memory& memory() override { return memoryAnswers; }
    Graphics& graphics() override { return graphicsAnswers; }

private:
    RootFolder root;
    LinuxHost hostAnswers;
    LinuxProcessor processorAnswers;
    LinuxMemory memoryAnswers;
    LinuxGraphics graphicsAnswers;
};

} // namespace ostrivane
