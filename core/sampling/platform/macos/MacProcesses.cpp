#include "core/sampling/platform/macos/MacProcesses.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/KernelLayout.hpp"
#include "core/sampling/platform/KernelRecords.hpp"
#include "core/sampling/platform/ProcessRecords.hpp"
#include "core/sampling/platform/macos/WallClock.hpp"

#include <dlfcn.h>
#include <libproc.h>
#include <sys/proc_info.h>
#include <sys/resource.h>
#include <sys/sysctl.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <utility>

namespace ostrivane {

namespace {

constexpr std::size_t spareIDs = 128;          ///< for processes that start between the two calls
constexpr std::size_t longestPath = 4096;      ///< bytes; the kernel refuses a larger buffer
constexpr std::size_t longestRegion = 1 << 20; ///< bytes that arguments and environment may take

/// Ascending.
std::vector<std::int32_t> allPIDs() {
    const int expected = proc_listallpids(nullptr, 0);
    if (expected < 1)
        return {};
    std::vector<std::int32_t> pids(static_cast<std::size_t>(expected) + spareIDs);
    const int listed = proc_listallpids(pids.data(), static_cast<int>(pids.size() * sizeof(std::int32_t))); // a count
    if (listed < 1)
        return {};
    pids.resize(std::min(pids.size(), static_cast<std::size_t>(listed)));
    std::erase_if(pids, [](std::int32_t pid) { return pid < 0; });
    std::ranges::sort(pids); // newest first until here
    return pids;
}

/// The record of that flavour; absent unless the kernel wrote the whole of it.
template <class Layout>
std::optional<std::array<std::byte, Layout::size>> record(std::int32_t pid, int flavour) {
    std::array<std::byte, Layout::size> room{};
    if (proc_pidinfo(pid, flavour, 0, room.data(), static_cast<int>(room.size())) != static_cast<int>(room.size()))
        return std::nullopt;
    return room;
}

/// The kernel's value for the process, written into `room`; empty when there is none or it does not fit.
std::span<const std::byte> sysctlValue(std::span<int> name, std::span<std::byte> room) {
    std::size_t length = room.size();
    if (sysctl(name.data(), static_cast<unsigned>(name.size()), room.data(), &length, nullptr, 0) != 0 ||
        length > room.size())
        return {};
    return room.first(length); // nothing of a process that is gone, which is no failure
}

std::optional<Date> startTime(std::int32_t pid) {
    std::array name{CTL_KERN, KERN_PROC, KERN_PROC_PID, static_cast<int>(pid)};
    std::array<std::byte, KernelLayout::KinfoProc::size> room{};
    return ProcessRecords::startTime(sysctlValue(name, room));
}

/// What the kernel tells of any process.
std::optional<ProcessInfo> restrictedInfo(std::int32_t pid) {
    const auto brief = record<KernelLayout::ProcBSDShortInfo>(pid, PROC_PIDT_SHORTBSDINFO);
    auto info = brief ? ProcessRecords::shortInfo(*brief) : std::nullopt;
    if (info)
        info->startTime = startTime(pid).value_or(wallClock());
    return info;
}

std::optional<ProcessInfo> processInfo(std::int32_t pid) {
    const auto whole = record<KernelLayout::ProcBSDInfo>(pid, PROC_PIDTBSDINFO);
    auto info = whole ? ProcessRecords::info(*whole) : std::nullopt;
    if (!info)
        info = restrictedInfo(pid);
    if (info)
        info->isKernelThread = pid == 0; // all of the kernel's threads are of this one
    return info;
}

std::optional<ProcessUsage> usage(std::int32_t pid) {
    // The call takes no size and writes the whole record.
    alignas(std::uint64_t) std::array<std::byte, KernelLayout::RusageInfoV6::size> room{};
    if (proc_pid_rusage(pid, RUSAGE_INFO_V6, static_cast<rusage_info_t*>(static_cast<void*>(room.data()))) != 0)
        return std::nullopt;
    return ProcessRecords::usage(room);
}

std::optional<std::int64_t> threadCount(std::int32_t pid) {
    const auto task = record<KernelLayout::ProcTaskInfo>(pid, PROC_PIDTASKINFO);
    return task ? ProcessRecords::threads(*task) : std::nullopt;
}

} // namespace

MacProcesses::ResponsibleFunction MacProcesses::systemResponsibleFunction() {
    static const auto function = reinterpret_cast<ResponsibleFunction>(
        dlsym(RTLD_DEFAULT, "responsibility_get_pid_responsible_for_pid")); // in no header
    return function;
}

const std::vector<ProcessReading>& MacProcesses::all() {
    readings.clear();
    for (const std::int32_t pid : allPIDs()) {
        auto info = processInfo(pid);
        if (!info) // gone meanwhile, or a zombie: those are listed, and unknown to every further call
            continue;
        ProcessReading& reading = readings.emplace_back(ProcessReading{.info = std::move(*info)});
        reading.usage = usage(pid);
        if (reading.usage) // what hides one hides the other
            reading.threads = threadCount(pid);
    }
    return readings;
}

std::optional<std::string> MacProcesses::path(std::int32_t pid) {
    std::array<std::byte, longestPath> room{};
    const int length = proc_pidpath(pid, room.data(), static_cast<std::uint32_t>(room.size()));
    if (length < 1)
        return std::nullopt;
    return KernelRecords::text(std::span(room).first(std::min(room.size(), static_cast<std::size_t>(length))));
}

std::optional<std::vector<std::string>> MacProcesses::arguments(std::int32_t pid) {
    std::array name{CTL_KERN, KERN_PROCARGS2, static_cast<int>(pid)};
    // Room for the longest region there can be, not initialised: of one that does not fit the kernel gives the end
    // instead of the beginning, and a size asked for before is that of another program after an exec.
    constexpr std::size_t size = longestRegion + sizeof(std::int32_t);
    const std::unique_ptr<std::byte[]> room(new std::byte[size]);
    const auto value = sysctlValue(name, {room.get(), size});
    if (value.size() == size) // perhaps an end
        return std::nullopt;
    return ProcessRecords::arguments(value);
}

std::int32_t MacProcesses::responsiblePID(std::int32_t pid) {
    const std::int32_t found = responsible ? responsible(pid) : 0;
    return found < 1 ? pid : found;
}

std::string MacProcesses::userName(std::uint32_t uid) {
    return userNames.of(uid);
}

std::optional<std::string> MacProcesses::currentDirectory(std::int32_t pid) {
    const auto paths = record<KernelLayout::ProcVnodePathInfo>(pid, PROC_PIDVNODEPATHINFO);
    return paths ? ProcessRecords::currentDirectory(*paths) : std::nullopt;
}

ProcessOrigin MacProcesses::origin(std::int32_t) {
    return {};
}

} // namespace ostrivane
