#pragma once

#include "core/sampling/platform/DRMLedger.hpp"
#include "core/sampling/platform/DRMUsage.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <dirent.h>

namespace ostrivane {

/// Who holds graphics chips open, among the processes whose descriptors can be read: the user's own.
///
/// Only the link of a descriptor tells what it leads to, and the descriptors of a session are tens of thousands. So no
/// reading looks at more than `linksPerReading` (3 to 12 ms), a process with very many is gone through over several
/// readings, and each process is looked at anew after a pause that doubles from 2 to 64 s: a new one soon, since it
/// opens its chip soon after its start, and an old one rarely. What was found before is read every time, which takes
/// about 10 µs a client.
class DRMClients {
public:
    static constexpr int linksPerReading = 1000;
    static constexpr int linksInTurn = 256; ///< of one process, before others have theirs
    static constexpr double firstPauseS = 2;
    static constexpr double longestPauseS = 64;
    static constexpr std::size_t clientsPerProcess = 128;
    static constexpr std::size_t clientsInAll = 1024;
    static constexpr int openFolders = 16; ///< processes that are being gone through

    /// `folder` must outlive it.
    explicit DRMClients(const RootFolder& folder) : root(folder) {}

    /// Whether a node such as "renderD128" may be touched.
    using IsAwake = std::function<bool(const std::string& node)>;

    /// What the clients used up to now, `now` in seconds. A client whose chip sleeps is not asked: its last figures
    /// stand. The answer is good until the next call.
    std::vector<DRMLedger::Held> read(double now, const IsAwake& isAwake);

private:
    struct Descriptor {
        std::string number;
        std::string node;
        std::optional<DRMUsage> usage; ///< absent until it was read
        bool isAsked = false;          ///< its chip is awake
    };
    struct CloseFolder {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };
    struct Process {
        std::string folder; ///< "proc/812"
        double nextLook = 0;
        double pause = firstPauseS;
        std::unique_ptr<DIR, CloseFolder> underWay; ///< its descriptors, as far as they have been gone through
        std::vector<Descriptor> descriptors;        ///< one for each client
    };

    void followProcesses(double now);
    void look(double now);
    int lookAt(Process& process, double now, int allowance);
    bool beginLook(Process& process);
    void endLook(Process& process, double now);
    void note(Process& process, std::string_view number);
    void refresh(Process& process, double now, const IsAwake& isAwake);

    const RootFolder& root;
    std::map<std::int32_t, Process> processes;
    std::optional<double> listedAt;
    std::size_t clientCount = 0;
    int underWayCount = 0;
    std::string buffer;
};

} // namespace ostrivane
