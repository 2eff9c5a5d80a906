#pragma once

#include "core/model/PidMap.hpp"
#include "core/sampling/platform/ProcPIDStat.hpp"
#include "core/sampling/platform/Processes.hpp"
#include "core/sampling/platform/SystemProcesses.hpp"
#include "core/sampling/platform/UserNames.hpp"
#include "core/sampling/platform/linux/FileDescriptor.hpp"
#include "core/sampling/platform/linux/FolderStream.hpp"
#include "core/sampling/platform/linux/KeptFile.hpp"
#include "core/sampling/platform/linux/MountTable.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// Processes from /proc. The stat file of each stays open: reading it again halves the cost of a process, and once the
/// process is gone it answers so, whoever has its id by then. statm and io are read only where the stat text changed,
/// and io, which can change without, of every process once in `fullRoundSeconds`.
class LinuxProcesses final : public Processes, public SystemProcesses {
public:
    static constexpr double fullRoundSeconds = 10;

    /// What turns raw values into figures.
    struct Units {
        Date bootTime; ///< frozen, so that the start of a process never moves
        std::uint64_t ticksPerSecond = 100;
        std::uint64_t pageSize = 4096;
        std::uint32_t userID = 0;
    };

    /// `folder` must outlive the object. At most `descriptorLimit` files stay open; further ones are opened anew each
    /// time.
    LinuxProcesses(const RootFolder& folder, const Units& units, std::size_t descriptorLimit);

    const std::vector<ProcessReading>& all() override;
    std::optional<std::string> path(std::int32_t pid) override;
    std::optional<std::vector<std::string>> arguments(std::int32_t pid) override;
    std::int32_t responsiblePID(std::int32_t pid) override;
    std::string userName(std::uint32_t uid) override;
    std::optional<std::string> currentDirectory(std::int32_t pid) override;
    ProcessOrigin origin(std::int32_t pid) override;

    /// Processor time and resident size of every process, readable or not, read now; the next call of `all` is answered
    /// from the same reading.
    std::optional<PidMap<SystemProcessTotals>> totals() override;

private:
    /// What is kept of a process beside its reading.
    struct Kept {
        std::int32_t pid = 0;
        FileDescriptor stat;                 ///< not open where the limit is reached
        std::optional<std::size_t> statHash; ///< of the text as it was last read; absent: never so far
        std::string rawName;                 ///< the kernel's, before it was mended
        std::uint64_t start = 0;
        SystemProcessTotals totals;
        std::uint64_t time = 0;      ///< clock ticks, user plus system
        bool ownerMayDiffer = false; ///< it did something since its owner was looked at
        bool usesDisk = false;       ///< its io changed when it was last read: it is read again whatever stat tells
        bool ioHidden = false;       ///< the system keeps its io file from this user
        std::chrono::steady_clock::time_point fullRead;
    };
    enum class Round { everything, withoutIdleKernel };

    void refresh(Round round);
    void listIDs();
    void takeInArrivals();
    bool read(Kept& kept, ProcessReading& reading, Round round);
    bool isRestingKernelThread(const Kept& kept, const ProcessReading& reading, Round round) const;
    std::optional<std::string_view> readStat(Kept& kept);
    std::optional<std::string_view> readRecord(std::int32_t pid, const char* name);
    std::optional<std::string_view> readFile(std::int32_t pid, const char* name);
    std::optional<std::string_view> readFile(std::int32_t pid, const char* name, std::vector<char>& into) const;
    std::optional<std::string> flatpakInfo(std::int32_t pid);
    std::optional<std::string> appImage(std::int32_t pid);
    void takeInfo(Kept& kept, ProcessInfo& info, const ProcPIDStat& stat);
    void takeUsage(Kept& kept, ProcessReading& reading, bool memoryChanged);
    std::optional<std::uint64_t> footprint(std::int32_t pid, bool isKernelThread);
    void takeOwner(const Kept& kept, ProcessInfo& info) const;
    void forget(Kept& kept);
    void keepNothingOpen();
    bool isThere(const std::string& path);
    bool swapIsUsed();

    const RootFolder& root;
    Units units;
    std::size_t descriptorLimit;
    std::size_t openDescriptors = 0;
    FolderStream proc;
    MountTable mounts;
    KeptFile swaps;
    std::vector<std::int32_t> ids;        ///< of this round, ascending
    std::vector<Kept> known;              ///< ascending by id
    std::vector<ProcessReading> readings; ///< in the order of `known`
    std::vector<char> buffer;
    bool swapInUse = false;
    bool lacksDescriptors = false; ///< a process of this round could not be opened, and is not gone
    bool isFresh = false;          ///< read for `totals`, not yet handed out
    std::chrono::steady_clock::time_point now;
    UserNames userNames;
};

} // namespace ostrivane
