#include "core/sampling/platform/ProcessRecords.hpp"
#include "fuzz/Require.hpp"

#include <cstddef>
#include <cstdint>
#include <span>

using namespace ostrivane;

/// What the macOS kernel tells of a process, and what the process made of its arguments: nothing is read beyond it, and
/// no text is longer than repairing its bytes can make it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t repairedByte = 3; // bytes of U+FFFD
    const auto bytes = std::as_bytes(std::span(data, size));
    if (const auto info = ProcessRecords::info(bytes))
        require(size >= 136 && info->name.size() <= 32 * repairedByte);
    if (const auto info = ProcessRecords::shortInfo(bytes))
        require(size >= 64 && info->name.size() <= 16 * repairedByte);
    ProcessRecords::startTime(bytes);
    ProcessRecords::usage(bytes);
    if (const auto threads = ProcessRecords::threads(bytes))
        require(*threads >= 0);
    if (const auto folder = ProcessRecords::currentDirectory(bytes))
        require(!folder->empty() && folder->size() <= 1024 * repairedByte);
    if (const auto arguments = ProcessRecords::arguments(bytes)) {
        std::size_t length = 0;
        for (const auto& argument : *arguments)
            length += argument.size();
        require(arguments->size() <= size && length <= size * repairedByte);
    }
    return 0;
}
