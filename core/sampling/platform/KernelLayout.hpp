#pragma once

#include <cstddef>

/// Where the macOS kernel puts the fields that are read of its records: offsets and sizes in bytes, the same on arm64
/// and x86_64. A build on a Mac holds them against the system's headers (macos/LayoutChecks.cpp).
namespace ostrivane::KernelLayout {

/// `vm_statistics64`: 32-bit counts, but for the two 64-bit swap counters.
struct VMStatistics64 {
    static constexpr std::size_t size = 152;
    static constexpr std::size_t freeCount = 0;
    static constexpr std::size_t activeCount = 4;
    static constexpr std::size_t inactiveCount = 8;
    static constexpr std::size_t wireCount = 12;
    static constexpr std::size_t purgeableCount = 88;
    static constexpr std::size_t speculativeCount = 92;
    static constexpr std::size_t swapins = 112;
    static constexpr std::size_t swapouts = 120;
    static constexpr std::size_t compressorPageCount = 128;
    static constexpr std::size_t externalPageCount = 136;
    static constexpr std::size_t internalPageCount = 140;
};

/// `xsw_usage`: 64-bit amounts.
struct XswUsage {
    static constexpr std::size_t size = 32;
    static constexpr std::size_t total = 0;
    static constexpr std::size_t used = 16;
};

/// `timeval`: seconds of 64 bits, microseconds of 32, then padding.
struct Timeval {
    static constexpr std::size_t size = 16;
    static constexpr std::size_t seconds = 0;
    static constexpr std::size_t microseconds = 8;
};

/// `proc_bsdinfo`: 32-bit fields, but for the texts and the 64-bit parts of the start time.
struct ProcBSDInfo {
    static constexpr std::size_t size = 136;
    static constexpr std::size_t status = 4;
    static constexpr std::size_t pid = 12;
    static constexpr std::size_t ppid = 16;
    static constexpr std::size_t uid = 20;
    static constexpr std::size_t comm = 48;
    static constexpr std::size_t commSize = 16; ///< with its zero
    static constexpr std::size_t name = 64;
    static constexpr std::size_t nameSize = 32; ///< with its zero
    static constexpr std::size_t terminal = 108;
    static constexpr std::size_t startSeconds = 120;
    static constexpr std::size_t startMicroseconds = 128;
};

/// `proc_bsdshortinfo`: 32-bit fields, but for the text.
struct ProcBSDShortInfo {
    static constexpr std::size_t size = 64;
    static constexpr std::size_t pid = 0;
    static constexpr std::size_t ppid = 4;
    static constexpr std::size_t status = 12;
    static constexpr std::size_t comm = 16;
    static constexpr std::size_t commSize = 16; ///< with its zero
    static constexpr std::size_t uid = 36;
};

/// `kinfo_proc`: the start time is a `timeval`.
struct KinfoProc {
    static constexpr std::size_t size = 648;
    static constexpr std::size_t startTime = 0;
};

/// `rusage_info_v6`: 64-bit fields.
struct RusageInfoV6 {
    static constexpr std::size_t size = 464;
    static constexpr std::size_t userTime = 16;
    static constexpr std::size_t systemTime = 24;
    static constexpr std::size_t idleWakeups = 32;
    static constexpr std::size_t interruptWakeups = 40;
    static constexpr std::size_t physFootprint = 72;
    static constexpr std::size_t bytesRead = 144;
    static constexpr std::size_t bytesWritten = 152;
    static constexpr std::size_t energy = 336;
};

/// `proc_taskinfo`.
struct ProcTaskInfo {
    static constexpr std::size_t size = 96;
    static constexpr std::size_t threads = 84; ///< 32 bits
};

/// `proc_vnodepathinfo`.
struct ProcVnodePathInfo {
    static constexpr std::size_t size = 2352;
    static constexpr std::size_t currentDirectory = 152;
    static constexpr std::size_t pathSize = 1024; ///< with its zero
};

} // namespace ostrivane::KernelLayout
