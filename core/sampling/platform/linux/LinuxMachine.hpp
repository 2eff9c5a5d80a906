#pragma once

#include "core/sampling/platform/Machine.hpp"
#include "core/sampling/platform/linux/LinuxApplications.hpp"
#include "core/sampling/platform/linux/LinuxFiles.hpp"
#include "core/sampling/platform/linux/LinuxGraphics.hpp"
#include "core/sampling/platform/linux/LinuxHost.hpp"
#include "core/sampling/platform/linux/LinuxMemory.hpp"
#include "core/sampling/platform/linux/LinuxProcesses.hpp"
#include "core/sampling/platform/linux/LinuxProcessor.hpp"
#include "core/sampling/platform/linux/LinuxSockets.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <cstddef>
#include <filesystem>

namespace ostrivane {

/// A Linux machine: the one that the program runs on, or one whose files lie under another folder.
class LinuxMachine final : public Machine {
public:
    /// `keptDescriptors` files of processes stay open at most.
    explicit LinuxMachine(const std::filesystem::path& path = "/", std::size_t keptDescriptors = 512);

    Platform platform() const override { return Platform::Linux; }

    Host& host() override { return hostAnswers; }
    Processor& processor() override { return processorAnswers; }
    Memory& memory() override { return memoryAnswers; }
    Graphics& graphics() override { return graphicsAnswers; }
    Processes& processes() override { return processAnswers; }
    SystemProcesses& systemProcesses() override { return processAnswers; }
    Sockets& sockets() override { return socketAnswers; }
    Applications& applications() override { return applicationAnswers; }
    Files& files() override { return fileAnswers; }

private:
    RootFolder root;
    LinuxHost hostAnswers;
    LinuxProcessor processorAnswers;
    LinuxMemory memoryAnswers;
    LinuxGraphics graphicsAnswers;
    LinuxProcesses processAnswers;
    LinuxSockets socketAnswers;
    LinuxApplications applicationAnswers;
    LinuxFiles fileAnswers;
};

} // namespace ostrivane
