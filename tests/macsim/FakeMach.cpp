#include "tests/macsim/FakeParts.hpp"
#include "tests/macsim/FakeSystem.hpp"

#include <mach/mach_time.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>

namespace {

constexpr mach_port_t hostPort = 0x0B03;

macsim::Mach state;
std::size_t hostRights = 0;
std::map<vm_address_t, std::vector<integer_t>> buffers;

/// Whether `host` may be asked and the test has not forbidden `call`.
bool answers(host_t host, const char* call) {
    if (host != hostPort || hostRights == 0)
        macsim::fault(std::string(call) + " on a port without a right");
    return !macsim::refused(call);
}

} // namespace

namespace macsim {

Mach& mach() {
    return state;
}

void resetMach() {
    state = Mach{};
    state.ticks = {{{1000, 500, 8000, 0}}, {{4000000000, 2200000000, 4294967295, 0}}};
    state.vmStatistics = recordNamed("vm_statistics64");
}

void forgetMach() {
    hostRights = 0;
    buffers.clear();
}

std::size_t liveVMBuffers() {
    return buffers.size();
}
std::size_t liveHostPorts() {
    return hostRights;
}

} // namespace macsim

mach_port_t mach_task_self_ = 0x0103;

host_t mach_host_self() {
    if (macsim::refused("mach_host_self"))
        return MACH_PORT_NULL;
    ++hostRights;
    return hostPort;
}

kern_return_t mach_port_deallocate(task_t task, mach_port_t name) {
    if (task != mach_task_self_ || name != hostPort || hostRights == 0) {
        macsim::fault("mach_port_deallocate of a port without a right");
        return KERN_FAILURE;
    }
    --hostRights;
    return KERN_SUCCESS;
}

kern_return_t vm_deallocate(task_t task, vm_address_t address, vm_size_t size) {
    const auto found = buffers.find(address);
    if (task != mach_task_self_ || found == buffers.end() || found->second.size() * sizeof(integer_t) != size) {
        macsim::fault("vm_deallocate of memory that was not handed out so");
        return KERN_FAILURE;
    }
    buffers.erase(found);
    return KERN_SUCCESS;
}

kern_return_t host_processor_info(host_t host, processor_flavor_t flavor, natural_t* processors,
                                  processor_info_array_t* info, mach_msg_type_number_t* count) {
    if (!answers(host, "host_processor_info") || flavor != PROCESSOR_CPU_LOAD_INFO)
        return KERN_FAILURE;
    if (macsim::refused("host_processor_info buffer"))
        return KERN_SUCCESS;
    std::vector<integer_t> counters;
    for (const auto& core : state.ticks)
        for (const std::uint32_t counter : core)
            counters.push_back(static_cast<integer_t>(counter)); // the type is signed, the counter is not
    counters.resize(counters.size() - std::min(counters.size(), state.missingCounters));
    counters.reserve(1);
    *processors = static_cast<natural_t>(state.ticks.size());
    *info = counters.data();
    *count = static_cast<mach_msg_type_number_t>(counters.size());
    buffers.emplace(reinterpret_cast<vm_address_t>(*info), std::move(counters)); // moving keeps the address
    return KERN_SUCCESS;
}

kern_return_t host_statistics64(host_t host, host_flavor_t flavor, host_info64_t info, mach_msg_type_number_t* count) {
    if (!answers(host, "host_statistics64") || flavor != HOST_VM_INFO64)
        return KERN_FAILURE;
    const auto filled = std::min<std::size_t>(*count, state.vmStatistics.size() / sizeof(integer_t));
    std::memcpy(info, state.vmStatistics.data(), filled * sizeof(integer_t));
    *count = static_cast<mach_msg_type_number_t>(filled);
    return KERN_SUCCESS;
}

kern_return_t host_page_size(host_t host, vm_size_t* size) {
    if (!answers(host, "host_page_size"))
        return KERN_FAILURE;
    *size = state.pageSize;
    return KERN_SUCCESS;
}

kern_return_t mach_timebase_info(mach_timebase_info_t info) {
    if (macsim::refused("mach_timebase_info"))
        return KERN_FAILURE;
    *info = {state.timebaseNumerator, state.timebaseDenominator};
    return KERN_SUCCESS;
}

std::uint64_t clock_gettime_nsec_np(int clock) {
    return clock == CLOCK_UPTIME_RAW ? state.uptimeNanos : 0;
}

/// Stands before the C library's own, which would tell of the machine that the tests run on.
int getloadavg(double averages[], int count) noexcept {
    if (macsim::refused("getloadavg"))
        return -1;
    const int given = std::min(count, 3);
    std::copy_n(state.loadAverage.begin(), given, averages);
    return given;
}
