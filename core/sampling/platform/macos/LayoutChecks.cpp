// Holds the offsets that the decoders use against the system's own headers. Nothing here runs.

#include "core/sampling/platform/KernelLayout.hpp"

#include <mach/mach.h>
#include <sys/proc_info.h>
#include <sys/resource.h>
#include <sys/sysctl.h>
#include <sys/time.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace ostrivane::KernelLayout {

// The statistics may grow at their end with a newer system, no more. The other two are read into exactly their size.
static_assert(sizeof(vm_statistics64_data_t) >= VMStatistics64::size);
static_assert(sizeof(xsw_usage) == XswUsage::size);
static_assert(sizeof(timeval) == Timeval::size);

static_assert(offsetof(vm_statistics64_data_t, free_count) == VMStatistics64::freeCount);
static_assert(offsetof(vm_statistics64_data_t, active_count) == VMStatistics64::activeCount);
static_assert(offsetof(vm_statistics64_data_t, inactive_count) == VMStatistics64::inactiveCount);
static_assert(offsetof(vm_statistics64_data_t, wire_count) == VMStatistics64::wireCount);
static_assert(offsetof(vm_statistics64_data_t, purgeable_count) == VMStatistics64::purgeableCount);
static_assert(offsetof(vm_statistics64_data_t, speculative_count) == VMStatistics64::speculativeCount);
static_assert(offsetof(vm_statistics64_data_t, swapins) == VMStatistics64::swapins);
static_assert(offsetof(vm_statistics64_data_t, swapouts) == VMStatistics64::swapouts);
static_assert(offsetof(vm_statistics64_data_t, compressor_page_count) == VMStatistics64::compressorPageCount);
static_assert(offsetof(vm_statistics64_data_t, external_page_count) == VMStatistics64::externalPageCount);
static_assert(offsetof(vm_statistics64_data_t, internal_page_count) == VMStatistics64::internalPageCount);
static_assert(sizeof(vm_statistics64_data_t::free_count) == 4 && sizeof(vm_statistics64_data_t::swapins) == 8);

static_assert(offsetof(xsw_usage, xsu_total) == XswUsage::total);
static_assert(offsetof(xsw_usage, xsu_used) == XswUsage::used);
static_assert(sizeof(xsw_usage::xsu_total) == 8);

static_assert(offsetof(timeval, tv_sec) == Timeval::seconds && sizeof(timeval::tv_sec) == 8);
static_assert(offsetof(timeval, tv_usec) == Timeval::microseconds && sizeof(timeval::tv_usec) == 4);

// The counters of `host_processor_info`, four a core, in the order of `CPUTicks::Counter`.
static_assert(sizeof(integer_t) == 4 && CPU_STATE_MAX == 4);
static_assert(CPU_STATE_USER == 0 && CPU_STATE_SYSTEM == 1 && CPU_STATE_IDLE == 2 && CPU_STATE_NICE == 3);

// The kernel writes no more than it is given room for, but for the usage: that one must fit.
static_assert(sizeof(proc_bsdinfo) == ProcBSDInfo::size);
static_assert(sizeof(proc_bsdshortinfo) == ProcBSDShortInfo::size);
static_assert(sizeof(kinfo_proc) == KinfoProc::size);
static_assert(sizeof(rusage_info_v6) == RusageInfoV6::size);
static_assert(sizeof(proc_taskinfo) == ProcTaskInfo::size);
static_assert(sizeof(proc_vnodepathinfo) == ProcVnodePathInfo::size);

static_assert(offsetof(proc_bsdinfo, pbi_status) == ProcBSDInfo::status);
static_assert(offsetof(proc_bsdinfo, pbi_pid) == ProcBSDInfo::pid);
static_assert(offsetof(proc_bsdinfo, pbi_ppid) == ProcBSDInfo::ppid);
static_assert(offsetof(proc_bsdinfo, pbi_uid) == ProcBSDInfo::uid);
static_assert(offsetof(proc_bsdinfo, pbi_comm) == ProcBSDInfo::comm);
static_assert(sizeof(proc_bsdinfo::pbi_comm) == ProcBSDInfo::commSize);
static_assert(offsetof(proc_bsdinfo, pbi_name) == ProcBSDInfo::name);
static_assert(sizeof(proc_bsdinfo::pbi_name) == ProcBSDInfo::nameSize);
static_assert(offsetof(proc_bsdinfo, e_tdev) == ProcBSDInfo::terminal && sizeof(proc_bsdinfo::e_tdev) == 4);
static_assert(offsetof(proc_bsdinfo, pbi_start_tvsec) == ProcBSDInfo::startSeconds);
static_assert(offsetof(proc_bsdinfo, pbi_start_tvusec) == ProcBSDInfo::startMicroseconds);
static_assert(sizeof(proc_bsdinfo::pbi_start_tvsec) == 8 && sizeof(proc_bsdinfo::pbi_start_tvusec) == 8);

static_assert(offsetof(proc_bsdshortinfo, pbsi_pid) == ProcBSDShortInfo::pid);
static_assert(offsetof(proc_bsdshortinfo, pbsi_ppid) == ProcBSDShortInfo::ppid);
static_assert(offsetof(proc_bsdshortinfo, pbsi_status) == ProcBSDShortInfo::status);
static_assert(offsetof(proc_bsdshortinfo, pbsi_comm) == ProcBSDShortInfo::comm);
static_assert(sizeof(proc_bsdshortinfo::pbsi_comm) == ProcBSDShortInfo::commSize);
static_assert(offsetof(proc_bsdshortinfo, pbsi_uid) == ProcBSDShortInfo::uid);

static_assert(offsetof(kinfo_proc, kp_proc.p_starttime) == KinfoProc::startTime); // a union with two queue links

static_assert(offsetof(rusage_info_v6, ri_user_time) == RusageInfoV6::userTime);
static_assert(offsetof(rusage_info_v6, ri_system_time) == RusageInfoV6::systemTime);
static_assert(offsetof(rusage_info_v6, ri_pkg_idle_wkups) == RusageInfoV6::idleWakeups);
static_assert(offsetof(rusage_info_v6, ri_interrupt_wkups) == RusageInfoV6::interruptWakeups);
static_assert(offsetof(rusage_info_v6, ri_phys_footprint) == RusageInfoV6::physFootprint);
static_assert(offsetof(rusage_info_v6, ri_diskio_bytesread) == RusageInfoV6::bytesRead);
static_assert(offsetof(rusage_info_v6, ri_diskio_byteswritten) == RusageInfoV6::bytesWritten);
static_assert(offsetof(rusage_info_v6, ri_energy_nj) == RusageInfoV6::energy);
static_assert(sizeof(rusage_info_v6::ri_user_time) == 8);

static_assert(offsetof(proc_taskinfo, pti_threadnum) == ProcTaskInfo::threads);
static_assert(sizeof(proc_taskinfo::pti_threadnum) == 4);

static_assert(offsetof(proc_vnodepathinfo, pvi_cdir.vip_path) == ProcVnodePathInfo::currentDirectory);
static_assert(sizeof(vnode_info_path::vip_path) == ProcVnodePathInfo::pathSize);

} // namespace ostrivane::KernelLayout
