#include "core/sampling/platform/linux/LinuxHost.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/CPUInfo.hpp"
#include "core/sampling/platform/CPUList.hpp"
#include "core/sampling/platform/CoreTopology.hpp"
#include "core/sampling/platform/MachineName.hpp"
#include "core/sampling/platform/Meminfo.hpp"
#include "core/sampling/platform/MountInfo.hpp"
#include "core/sampling/platform/ProcUptime.hpp"
#include "core/sampling/platform/UserNames.hpp"

#include <fmt/format.h>

#include <algorithm>

#include <time.h>
#include <unistd.h>

namespace ostrivane {

namespace {

std::string textOf(const RootFolder& root, const std::string& path) {
    return root.read(path).value_or(std::string());
}

std::vector<std::int64_t> cores(const RootFolder& root, const std::string& path) {
    return CPUList::parse(textOf(root, path)).value_or(std::vector<std::int64_t>());
}

CPUInfo::Capacities capacities(const RootFolder& root) {
    const std::string folder = "sys/devices/system/cpu";
    CPUInfo::Capacities found;
    for (const std::string& name : root.list(folder)) {
        const std::string_view prefix = "cpu";
        const auto core = name.starts_with(prefix)
                              ? Text::number<std::uint16_t>(std::string_view(name).substr(prefix.size()))
                              : std::nullopt;
        if (!core || *core >= CPUList::limit)
            continue;
        const std::string text = textOf(root, fmt::format("{}/{}/cpu_capacity", folder, name));
        if (const auto capacity = Text::number<std::uint64_t>(Text::trimmed(text)))
            found.emplace(*core, *capacity);
    }
    return found;
}

CoreTopology topology(const RootFolder& root) {
    CoreTopology found;
    found.possible = cores(root, "sys/devices/system/cpu/possible");
    found.online = cores(root, "sys/devices/system/cpu/online");
    found.fast = cores(root, "sys/devices/cpu_core/cpus");
    found.frugal = cores(root, "sys/devices/cpu_atom/cpus");
    if (!found.frugal.empty()) { // a set of its own beside the efficient cores; alone it tells nothing
        const auto lowPower = cores(root, "sys/devices/cpu_lowpower/cpus");
        found.frugal.insert(found.frugal.end(), lowPower.begin(), lowPower.end());
    }
    found.capacities = capacities(root);
    return found;
}

MachineName machineName(const RootFolder& root) {
    return {.sysVendor = textOf(root, "sys/class/dmi/id/sys_vendor"),
            .productName = textOf(root, "sys/class/dmi/id/product_name"),
            .productVersion = textOf(root, "sys/class/dmi/id/product_version"),
            .boardVendor = textOf(root, "sys/class/dmi/id/board_vendor"),
            .boardName = textOf(root, "sys/class/dmi/id/board_name"),
            .compatible = textOf(root, "sys/firmware/devicetree/base/compatible"),
            .model = textOf(root, "sys/firmware/devicetree/base/model")};
}

/// The groups that the program acts in.
std::vector<std::uint32_t> groups() {
    std::vector<std::uint32_t> all(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
    all.resize(static_cast<std::size_t>(std::max(::getgroups(static_cast<int>(all.size()), all.data()), 0)));
    all.push_back(::getegid());
    return all;
}

bool hidesProcesses(const RootFolder& root) {
    const std::string text = textOf(root, "proc/self/mountinfo");
    const std::vector<MountInfo> mounts = MountInfo::parse(text);
    if (!root.isRunningSystem())
        return MountInfo::hidesProcesses(mounts, {});
    return ::geteuid() != 0 && MountInfo::hidesProcesses(mounts, groups());
}

} // namespace

HostInfo LinuxHost::info() {
    HostInfo info;
    info.pageSize = static_cast<std::uint64_t>(std::max(::sysconf(_SC_PAGESIZE), 1L));
    info.physicalMemory = Meminfo::parse(textOf(root, "proc/meminfo")).total.value_or(0);

    const MachineName name = machineName(root);
    info.modelIdentifier = name.modelIdentifier();
    info.marketingName = name.marketingName();

    const CoreTopology known = topology(root);
    const long online = root.isRunningSystem() ? ::sysconf(_SC_NPROCESSORS_ONLN) : -1;
    info.coreLayout = known.layout(online > 0 ? online : static_cast<std::int64_t>(known.online.size()));
    info.coreKinds = known.kinds();
    info.cpuBrand = CPUInfo::brand(textOf(root, "proc/cpuinfo"), known.capacities);

    info.userID = ::getuid();
    info.home = homeFolder();
    info.hidesProcesses = hidesProcesses(root);
    return info;
}

std::optional<double> LinuxHost::uptime() {
    timespec time{};
    if (root.isRunningSystem() && ::clock_gettime(CLOCK_BOOTTIME, &time) == 0)
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    const auto text = root.read("proc/uptime");
    return text ? ProcUptime::parse(*text) : std::nullopt;
}

} // namespace ostrivane
