#include "core/sampling/platform/macos/Sysctl.hpp"

#include "core/sampling/platform/KernelLayout.hpp"
#include "core/sampling/platform/KernelRecords.hpp"

#include <sys/sysctl.h>
#include <sys/types.h>

#include <array>
#include <vector>

namespace ostrivane::Sysctl {

namespace {

/// The value of `name`, written into `room`; empty when there is none or it does not fit.
std::span<const std::byte> read(const char* name, std::span<std::byte> room) {
    std::size_t length = room.size();
    if (sysctlbyname(name, room.data(), &length, nullptr, 0) != 0 || length > room.size())
        return {};
    return room.first(length);
}

} // namespace

std::optional<std::int64_t> integer(const char* name) {
    std::array<std::byte, sizeof(std::int64_t)> room{};
    return KernelRecords::integer(read(name, room)); // the length that comes back tells 4 bytes from 8
}

std::optional<std::string> string(const char* name) {
    std::size_t length = 0;
    if (sysctlbyname(name, nullptr, &length, nullptr, 0) != 0)
        return std::nullopt;
    std::vector<std::byte> room(length);
    return KernelRecords::text(read(name, room));
}

std::optional<Date> bootTime() {
    std::array<std::byte, KernelLayout::Timeval::size> room{};
    return KernelRecords::date(read("kern.boottime", room));
}

std::optional<SwapUsage> swapUsage() {
    std::array<std::byte, KernelLayout::XswUsage::size> room{};
    return KernelRecords::swapUsage(read("vm.swapusage", room));
}

} // namespace ostrivane::Sysctl
