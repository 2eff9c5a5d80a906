#pragma once

#include <boost/json/object.hpp>
#include <mach/mach.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// The Mac that the readers under test ask: system calls that answer from fixtures, refuse as the system does, and
/// count what they hand out. A test changes the fixture's values in place.
namespace macsim {

/// Puts all values back and ends all refusals. What is held stays counted.
void reset();
/// A system that has handed out nothing and seen no fault.
void restart();

/// What the readers hold at the moment. None of it may be left when they are gone.
struct Balance {
    std::size_t objects = 0;   ///< references to Core Foundation objects
    std::size_t ioObjects = 0; ///< registry entries and iterators
    std::size_t vmBuffers = 0;
    std::size_t hostPorts = 0; ///< send rights
    std::size_t queues = 0;    ///< kernel queues

    friend bool operator==(const Balance&, const Balance&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Balance& balance);
};
Balance balance();

/// Calls that the real system answers with a crash or that damage memory: a release too many, a use after the last one.
void fault(std::string what);
const std::vector<std::string>& faults();

/// Makes the call of that name fail from here on. "host_processor_info buffer" makes it succeed without a buffer.
void refuse(std::string call);
bool refused(std::string_view call);

/// The kernel's named values, as bytes.
std::map<std::string, std::vector<std::byte>>& sysctls();

/// "services", and "paths" to single entries.
boost::json::object& registry();

/// What opens as a bundle, by path: its dictionaries "plain" and "localized", of which it may lack either.
boost::json::object& bundles();

/// The user's preferences, by domain and key; {"$data": "00ff"} is binary data. A change is another program's.
boost::json::object& preferences();

struct Mach {
    std::vector<std::array<std::uint32_t, 4>> ticks;
    std::size_t missingCounters = 0; ///< how many fewer are handed out than the cores have
    std::vector<std::byte> vmStatistics;
    vm_size_t pageSize = 16384;
    std::uint32_t timebaseNumerator = 125;
    std::uint32_t timebaseDenominator = 3;
    std::uint64_t uptimeNanos = 86'400'250'000'000; ///< without sleep
    std::array<double, 3> loadAverage{2.5, 1.75, 1.25};
};
Mach& mach();

/// One process as the kernel has it: its records, byte for byte.
struct Process {
    std::uint32_t uid = 501;
    bool isZombie = false;
    std::map<int, std::vector<std::byte>> records; ///< by flavour of `proc_pidinfo`
    std::vector<std::byte> usage;                  ///< `rusage_info_v6`
    std::vector<std::byte> kernelInfo;             ///< `kinfo_proc`
    std::vector<std::byte> arguments;              ///< the count and the region of `KERN_PROCARGS2`
    std::string path;
    std::int32_t responsible = -1;
};

struct ProcessTable {
    std::map<std::int32_t, Process> processes;
    std::uint32_t userID = 501; ///< whose program asks
    std::map<std::uint32_t, std::string> userNames;
    std::vector<std::string> calls; ///< names of those made so far
    /// Called ahead of each call on a process or the list of them: what happens on the machine meanwhile.
    std::function<void(const std::string& call, std::int32_t pid)> meanwhile;
};
ProcessTable& processTable();

/// Nanoseconds that each live timer waits for, oldest queue first.
std::vector<std::int64_t> timers();
/// Lets the time of every live timer run out.
void fireTimers();

/// A record of the fixtures; a file of theirs, and bytes written as hexadecimal digits.
std::vector<std::byte> recordNamed(std::string_view name);
boost::json::value fixture(std::string_view name);
std::vector<std::byte> bytesOfHex(std::string_view digits);

} // namespace macsim
