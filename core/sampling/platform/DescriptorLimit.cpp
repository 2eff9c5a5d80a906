#include "core/sampling/platform/DescriptorLimit.hpp"

#include <algorithm>
#include <atomic>
#include <limits>

#include <sys/resource.h>

namespace ostrivane::DescriptorLimit {

namespace {

std::atomic<rlim_t> original = 0; ///< the soft limit before it was raised; 0: it never was
static_assert(std::atomic<rlim_t>::is_always_lock_free, "read between fork and exec");

} // namespace

void raise() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= limit.rlim_max)
        return;
    const rlim_t before = limit.rlim_cur;
    limit.rlim_cur = limit.rlim_max;
    if (::setrlimit(RLIMIT_NOFILE, &limit) == 0)
        original = before;
}

std::size_t budget() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 0;
    return static_cast<std::size_t>(std::min<rlim_t>(limit.rlim_cur, std::numeric_limits<int>::max()) / 2);
}

void putBack() {
    const rlim_t before = original;
    rlimit limit{};
    if (before == 0 || ::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = std::min(before, limit.rlim_max);
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace ostrivane::DescriptorLimit
