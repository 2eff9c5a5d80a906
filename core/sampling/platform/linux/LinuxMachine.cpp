#include "core/sampling/platform/linux/LinuxMachine.hpp"

#include <algorithm>

#include <unistd.h>

namespace ostrivane {

LinuxMachine::LinuxMachine(const std::filesystem::path& path)
    : root(path), hostAnswers(root), processorAnswers(root),
      memoryAnswers(root, static_cast<std::uint64_t>(std::max(::sysconf(_SC_PAGESIZE), 1L))), graphicsAnswers(root) {}

} // namespace ostrivane
