#pragma once

#include "core/attribution/AppGrouper.hpp"
#include "core/attribution/AppRules.hpp"
#include "core/attribution/DevClassifier.hpp"
#include "core/attribution/ProjectDetector.hpp"
#include "core/model/PidMap.hpp"
#include "core/sampling/Collectors.hpp"
#include "core/sampling/NettopSampler.hpp"
#include "core/sampling/SystemProcessSampler.hpp"
#include "core/sampling/platform/Processes.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// Turns the system's process table into a list of records on every tick: reads what never changes once, derives rates
/// from the previous reading, joins in the samplers' figures and asks which application each process belongs to. What
/// it keeps, it keeps of living processes only.
class ProcessCollector {
public:
    struct Options {
        std::uint32_t userID = 0;
        double nanosPerTick = 1; ///< of `ProcessUsage::cpuTicks`
        /// A process that may not be read in detail hides its sockets and graphics clients too: their figures are
        /// absent. Without it they are 0, where the source of the figures sees every process.
        bool restrictedHidesTraffic = false;
    };

    /// What is joined in; null: not available on this tick.
    struct Joined {
        const PidMap<SystemProcessSampler::Entry>* systemEntries = nullptr;
        const PidMap<TrafficRates>* network = nullptr;
        const PidMap<double>* gpu = nullptr;
    };

    /// How long ago a process was last seen active, and since when it is known. Seconds.
    struct Activity {
        std::optional<double> sinceActive; ///< absent when it never was
        double observed = 0;
    };

    /// `asked` and `projects` outlive the collector.
    ProcessCollector(Processes& asked, ProjectDetector& projects, std::shared_ptr<const AppRules> rules,
                     const Options& options);

    /// Other rules, because applications came or went: every process finds its application anew.
    void setRules(std::shared_ptr<const AppRules> rules);

    ProcessOutput sample(double now, const Joined& joined, bool refreshProjects, const PIDSet& listeningPIDs);

    Activity activity(std::int32_t pid, double now) const;

    /// The working directory and project of the process are looked up again.
    void refreshWorkingDirectory(std::int32_t pid);

    std::size_t knownProcesses() const { return known.size(); }

private:
    struct Previous {
        ProcessUsage usage;
        double time = 0;
    };

    struct DiskTotals {
        std::uint64_t read = 0;
        std::uint64_t written = 0;
        double time = 0;
    };

    /// What is kept of a process.
    struct Known {
        Date start;
        std::uint64_t rawStart = 0;
        std::int32_t responsiblePID = 0;
        std::uint32_t uid = 0;
        std::string user;
        std::optional<std::vector<std::string>> arguments;
        std::optional<DevClassifier::Match> dev;
        std::optional<std::string> cwd;
        std::optional<std::string> projectKey;

        std::string displayName;
        AppGrouper::Input grouping;
        AppGrouper::OwnKeys own;
        int originReads = 0; ///< a launcher moves a process into its unit after the start: it is looked at twice
        bool needsKeys = true;

        std::optional<Previous> previous;
        std::optional<DiskTotals> disk; ///< as they were last read
        std::optional<double> lastActive;
        double firstSeen = 0;
        std::uint64_t seenIn = 0; ///< the round in which it was last seen
    };

    Known& recall(const ProcessReading& reading, double now);
    void readStatics(Known& process, const ProcessInfo& info);
    void readOrigin(Known& process, const ProcessInfo& info);
    void nameAfter(Known& process, const ProcessInfo& info);
    void takeUsage(Known& process, const ProcessReading& reading, ProcessSnapshot& record, double now) const;
    static void takeDiskRates(Known& process, const ProcessReading& reading, ProcessSnapshot& record, double now);
    void join(const ProcessReading& reading, ProcessSnapshot& record, const Joined& joined) const;
    void lookUpProject(Known& process, ProcessSnapshot& record, bool refresh, bool listens);
    void forgetTheGone();
    void assignApplications(std::vector<ProcessSnapshot>& records);
    RunningApps desktopApps(const std::vector<ProcessSnapshot>& records) const;

    Processes& processes;
    ProjectDetector& projects;
    std::shared_ptr<const AppRules> rules;
    Options options;
    PidMap<std::unique_ptr<Known>> known;
    std::vector<Known*> living; ///< of this round, beside the records
    std::uint64_t round = 0;
};

} // namespace ostrivane
