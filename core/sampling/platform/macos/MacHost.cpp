#include "core/sampling/platform/macos/MacHost.hpp"

#include "core/model/MachTime.hpp"
#include "core/sampling/platform/KernelRecords.hpp"
#include "core/sampling/platform/Uptime.hpp"
#include "core/sampling/platform/UserNames.hpp"
#include "core/sampling/platform/macos/CFValue.hpp"
#include "core/sampling/platform/macos/IORegistry.hpp"
#include "core/sampling/platform/macos/Sysctl.hpp"
#include "core/sampling/platform/macos/WallClock.hpp"

#include <mach/mach_time.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

namespace ostrivane {

namespace {

/// Bytes; 16 KiB on Apple silicon, so a wrong guess would be off by four. Asked a second way before one is made.
std::uint64_t pageSize(host_t host) {
    vm_size_t size = 0;
    if (host_page_size(host, &size) == KERN_SUCCESS && size > 0)
        return size;
    const auto named = Sysctl::integer("hw.pagesize").value_or(0);
    return named > 0 ? static_cast<std::uint64_t>(named) : HostInfo{}.pageSize;
}

CoreLayout coreLayout() {
    CoreLayout layout;
    const auto logical = Sysctl::integer("hw.logicalcpu");
    layout.logical = logical ? *logical : Sysctl::integer("hw.activecpu").value_or(0);
    // Level 0 is the fastest kind. A machine with one kind has one level, or does not know the name.
    if (Sysctl::integer("hw.nperflevels").value_or(1) >= 2) {
        layout.performance = Sysctl::integer("hw.perflevel0.logicalcpu").value_or(0);
        layout.efficiency = Sysctl::integer("hw.perflevel1.logicalcpu").value_or(0);
    } else {
        layout.performance = layout.logical;
    }
    return layout;
}

/// A number on some systems, 4 bytes of data on others.
std::optional<std::int64_t> coreIndex(CFTypeRef value) {
    if (const auto bytes = CFValue::data(value))
        return KernelRecords::coreIndex(*bytes);
    return CFValue::integer(value);
}

std::optional<CoreLoad::Kind> coreKind(CFTypeRef value) {
    const auto bytes = CFValue::data(value);
    return bytes ? KernelRecords::coreKind(*bytes) : std::nullopt;
}

/// Each core is a device of the platform, among many others that have neither property.
CoreKinds coreKinds() {
    CoreKinds kinds;
    for (const IOHandle& device : IORegistry::services("IOPlatformDevice")) {
        const auto kind = coreKind(IORegistry::property(device, "cluster-type").get());
        if (!kind)
            continue;
        const auto index = coreIndex(IORegistry::property(device, "logical-cpu-id").get());
        if (index)
            kinds.insert_or_assign(*index, *kind);
    }
    return kinds;
}

/// 125/3 on Apple silicon, 1 on Intel.
double nanosPerTick() {
    mach_timebase_info_data_t base{};
    return mach_timebase_info(&base) == KERN_SUCCESS ? MachTime::nanosPerTick(base.numer, base.denom) : 1;
}

/// The clock that stops while the machine sleeps; it gives 0 when it fails.
std::optional<double> awakeSeconds() {
    constexpr double nanosPerSecond = 1e9;
    const std::uint64_t nanos = clock_gettime_nsec_np(CLOCK_UPTIME_RAW);
    return nanos > 0 ? std::optional(static_cast<double>(nanos) / nanosPerSecond) : std::nullopt;
}

} // namespace

HostInfo MacHost::info() {
    HostInfo info;
    info.pageSize = pageSize(port.get());
    info.physicalMemory =
        static_cast<std::uint64_t>(std::max<std::int64_t>(0, Sysctl::integer("hw.memsize").value_or(0)));
    info.modelIdentifier = Sysctl::string("hw.model").value_or("Mac");
    info.cpuBrand = Sysctl::string("machdep.cpu.brand_string").value_or("CPU");
    info.isAppleSilicon = true;
    info.marketingName = marketingName(IORegistry::productName().value_or(""), info.modelIdentifier);
    info.coreLayout = coreLayout();
    info.coreKinds = coreKinds();
    info.nanosPerTick = nanosPerTick();
    info.userID = getuid();
    info.home = homeFolder();
    return info;
}

std::optional<double> MacHost::uptime() {
    return uptimeSince(Sysctl::bootTime(), wallClock(), awakeSeconds());
}

} // namespace ostrivane
