#pragma once

#include "core/model/PidMap.hpp"

#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace ostrivane {

using SocketInode = std::uint32_t; ///< the number by which a process's descriptors name a socket; never 0
using SocketInodes = boost::unordered_flat_set<SocketInode>;

/// The open descriptors of one process.
class Descriptors {
public:
    virtual ~Descriptors() = default;

    /// The next one; absent behind the last. Those opened meanwhile may be left out.
    virtual std::optional<int> next() = 0;

    /// The socket behind one; absent when it is something else, or closed.
    virtual std::optional<SocketInode> socketAt(int descriptor) = 0;
};

/// What is asked about processes to find the holders of sockets.
class DescriptorSource {
public:
    virtual ~DescriptorSource() = default;

    /// All processes, in no order.
    virtual std::vector<std::int32_t> pids() = 0;

    /// When it began, in the system's units; tells a process from a later one with its id, and which of two is younger.
    virtual std::optional<std::uint64_t> startOf(std::int32_t pid) = 0;

    /// None when the process is gone or hides them: those of other users do.
    virtual std::unique_ptr<Descriptors> open(std::int32_t pid) = 0;
};

/// Which process holds a socket, as far as it is known.
struct SocketOwnership {
    struct Place {
        std::int32_t pid = 0;
        int descriptor = -1;
    };

    PidMap<std::uint64_t> processes; ///< when each began; those whose descriptors can be read
    boost::unordered_flat_map<SocketInode, Place> places;
    SocketInodes
        sought; ///< not found so far, but not all processes have been looked at; those in neither have no holder
};

/// Finds the processes behind sockets, a little at a time: reading a descriptor costs some microseconds, and all that a
/// session has are tens of thousands. So descriptors are read only of processes that are new, and, while a socket is
/// without a holder, of the others until it is found: the holders of other sockets first, then the youngest. What was
/// found is looked at again each time, as sockets are handed on. A socket that several processes hold belongs to the
/// youngest of those that were looked at.
class SocketOwners {
public:
    /// What one call of `refresh` may cost. A walk through descriptors that is cut short goes on in the next call.
    struct Limits {
        std::size_t effort = 6'000;       ///< of the search; a unit takes one to two microseconds
        std::size_t firstEffort = 30'000; ///< of the first one, which knows of nothing
        std::size_t checks = 250;         ///< sockets found before that are looked at again
        int restingRefreshes = 15;        ///< until a socket that nobody seems to hold is sought again
    };
    static constexpr std::size_t stepEffort = 1; ///< the next descriptor's number
    static constexpr std::size_t readEffort = 3; ///< what is behind it
    static constexpr std::size_t openEffort = 8; ///< beginning with a process

    /// `processes` outlives the object.
    SocketOwners(DescriptorSource& processes, const Limits& mostOfAll)
        : source(processes), limits(mostOfAll), effortLeft(mostOfAll.firstEffort) {}

    /// Brings the holders of `wanted` up to date; what is known of other sockets is forgotten.
    const SocketOwnership& refresh(const SocketInodes& wanted);

private:
    using ProcessSet = boost::unordered_flat_set<std::int32_t>;

    struct Walk {
        std::int32_t pid = 0;
        bool isArrival = false; ///< walked to its end in any case
        std::unique_ptr<Descriptors> descriptors;
        boost::unordered_flat_set<int> known; ///< descriptors that need no reading
    };

    void takeProcesses();
    void forget(std::int32_t pid);
    void loseSightOf(std::int32_t pid);
    void dropUnwanted(const SocketInodes& wanted);
    void checkPlaces();
    void chooseSought(const SocketInodes& wanted);
    void search(const SocketInodes& wanted);
    bool beginWalk();
    std::optional<std::int32_t> nextOfRound();
    void beginRound();
    void endRound();
    void spend(std::size_t effort) { effortLeft -= effort < effortLeft ? effort : effortLeft; }
    void claim(SocketInode inode, const SocketOwnership::Place& place);
    bool isYounger(std::int32_t pid, std::int32_t other) const;

    DescriptorSource& source;
    Limits limits;
    std::size_t effortLeft;
    SocketOwnership known;
    ProcessSet living;
    ProcessSet holders;                 ///< of any socket so far; they are told from later processes with their ids
    std::vector<std::int32_t> arrivals; ///< not looked at so far; the youngest last
    std::vector<std::int32_t> queue;    ///< of the round through all processes under way; the next one last
    SocketInodes roundSeeks;            ///< what has no holder when the round ends without one
    ProcessSet walkedNow;               ///< from their first descriptor on, in this refresh
    std::optional<Walk> walk;
    boost::unordered_flat_map<SocketInode, int> unheld; ///< refreshes until it is sought again
    std::pair<std::int32_t, int> lastChecked{0, -1};    ///< process and descriptor
};

} // namespace ostrivane
