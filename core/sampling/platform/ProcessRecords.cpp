#include "core/sampling/platform/ProcessRecords.hpp"

#include "core/model/Saturating.hpp"
#include "core/model/Text.hpp"
#include "core/sampling/platform/Bytes.hpp"
#include "core/sampling/platform/KernelLayout.hpp"
#include "core/sampling/platform/KernelRecords.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace ostrivane::ProcessRecords {

namespace {

using Bytes::field;

constexpr std::uint64_t microsecondsPerSecond = 1'000'000;

/// The device number of a terminal; without one it is 0 here, and -1 where the system speaks of devices elsewhere.
bool isTerminal(std::uint32_t device) {
    return device != 0 && device != 0xFFFF'FFFF;
}

} // namespace

std::optional<ProcessInfo> info(std::span<const std::byte> record) {
    using Layout = KernelLayout::ProcBSDInfo;
    if (record.size() < Layout::size)
        return std::nullopt;
    const auto seconds = field<std::uint64_t>(record, Layout::startSeconds);
    const auto microseconds = field<std::uint64_t>(record, Layout::startMicroseconds);
    if (microseconds >= microsecondsPerSecond)
        return std::nullopt;
    const auto name = KernelRecords::text(record.subspan(Layout::name, Layout::nameSize));
    const auto comm = KernelRecords::text(record.subspan(Layout::comm, Layout::commSize));
    return ProcessInfo{.pid = field<std::int32_t>(record, Layout::pid),
                       .ppid = field<std::int32_t>(record, Layout::ppid),
                       .uid = field<std::uint32_t>(record, Layout::uid),
                       .name = name ? *name : comm.value_or(""),
                       .status = field<std::uint32_t>(record, Layout::status),
                       .startTime = Date{static_cast<double>(seconds) + static_cast<double>(microseconds) /
                                                                            static_cast<double>(microsecondsPerSecond)},
                       .hasTerminal = isTerminal(field<std::uint32_t>(record, Layout::terminal))};
}

std::optional<ProcessInfo> shortInfo(std::span<const std::byte> record) {
    using Layout = KernelLayout::ProcBSDShortInfo;
    if (record.size() < Layout::size)
        return std::nullopt;
    return ProcessInfo{
        .pid = field<std::int32_t>(record, Layout::pid),
        .ppid = field<std::int32_t>(record, Layout::ppid),
        .uid = field<std::uint32_t>(record, Layout::uid),
        .name = KernelRecords::text(record.subspan(Layout::comm, Layout::commSize)).value_or(""),
        .status = field<std::uint32_t>(record, Layout::status),
    };
}

std::optional<Date> startTime(std::span<const std::byte> record) {
    using Layout = KernelLayout::KinfoProc;
    return record.size() < Layout::size ? std::nullopt : KernelRecords::date(record.subspan(Layout::startTime));
}

std::optional<ProcessUsage> usage(std::span<const std::byte> record) {
    using Layout = KernelLayout::RusageInfoV6;
    if (record.size() < Layout::size)
        return std::nullopt;
    const auto count = [record](std::size_t offset) { return field<std::uint64_t>(record, offset); };
    return ProcessUsage{.cpuTicks = saturatingSum(count(Layout::userTime), count(Layout::systemTime)),
                        .footprint = count(Layout::physFootprint),
                        .diskRead = count(Layout::bytesRead),
                        .diskWritten = count(Layout::bytesWritten),
                        .energyNJ = count(Layout::energy),
                        .wakeups = saturatingSum(count(Layout::idleWakeups), count(Layout::interruptWakeups))};
}

std::optional<std::int64_t> threads(std::span<const std::byte> record) {
    using Layout = KernelLayout::ProcTaskInfo;
    if (record.size() < Layout::size)
        return std::nullopt;
    const auto count = field<std::int32_t>(record, Layout::threads);
    return count < 0 ? std::nullopt : std::optional<std::int64_t>(count);
}

std::optional<std::string> currentDirectory(std::span<const std::byte> record) {
    using Layout = KernelLayout::ProcVnodePathInfo;
    if (record.size() < Layout::size)
        return std::nullopt;
    return KernelRecords::text(record.subspan(Layout::currentDirectory, Layout::pathSize));
}

// A count of 4 bytes; the path of the program with its zero; zeros up to a multiple of 8; the arguments, each with its
// zero; the environment.
std::optional<std::vector<std::string>> arguments(std::span<const std::byte> value) {
    if (value.size() <= sizeof(std::int32_t))
        return std::nullopt;
    const auto count = field<std::int32_t>(value, 0);
    std::string_view rest(reinterpret_cast<const char*>(value.data()), value.size());
    rest.remove_prefix(sizeof(std::int32_t));
    rest.remove_prefix(std::min(rest.find('\0'), rest.size()));
    rest.remove_prefix(std::min(rest.find_first_not_of('\0'), rest.size())); // once: later zeros are empty arguments
    std::vector<std::string> found; // grows with what is there: the count is not to be trusted with memory
    for (std::int32_t index = 0; index < count && !rest.empty(); ++index) {
        const std::string_view argument = rest.substr(0, rest.find('\0'));
        found.push_back(Text::repaired(argument));
        rest.remove_prefix(std::min(argument.size() + 1, rest.size()));
    }
    // Fewer than it is said to have: what was read at the end is padding.
    if (std::cmp_less(found.size(), count))
        while (!found.empty() && found.back().empty())
            found.pop_back();
    return found;
}

} // namespace ostrivane::ProcessRecords
