#pragma once

#include "core/judgement/SessionSummary.hpp"
#include "core/model/MemorySnapshot.hpp"
#include "core/model/PidMap.hpp"

#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

struct ApplicationSnapshot;
struct ProcessSnapshot;
struct SystemSnapshot;

/// Folds the snapshots of a session into sums. A plain value; figures that are no numbers are not counted. In the
/// steady state, with the same applications and processes from tick to tick, `add` does not allocate.
class SessionRecorder {
public:
    SessionRecorder(std::string name, Date start);

    const std::string& name() const { return title; }
    Date start() const { return began; }

    void add(const SystemSnapshot& snapshot);

    /// What was recorded so far. Lines of equal processor time are ordered by key, and by process id.
    SessionSummary summary(Date end) const;

    /// The same without applications and processes, which are many: for each tick.
    SessionSummary figures(Date end) const;

private:
    /// A reading that not every snapshot has.
    struct Readings {
        double sum = 0;
        double peak = 0;
        std::int64_t count = 0;

        void add(double reading);
        void add(std::optional<double> reading);
        SessionSummary::Stat stat() const;
        std::optional<SessionSummary::Stat> statIfAny() const;
    };

    struct App {
        SessionSummary::AppLine line; ///< sums; what follows from them is filled in when it is handed out
        std::string name;             ///< the latest
        std::int64_t samples = 0;
        double firstMemory = 0;
        double lastMemory = 0;
    };

    using Keys = boost::unordered_flat_set<std::string>;

    void noteRunning(const std::vector<ApplicationSnapshot>& applications);
    void count(const SystemSnapshot& snapshot, double seconds);
    void count(const ApplicationSnapshot& app, double seconds);
    void count(const ProcessSnapshot& process, double seconds);
    const std::string& nameOf(const std::string& key) const;
    SessionSummary::AppLine finished(const App& app) const;
    std::vector<SessionSummary::AppLine> busiestApps() const;
    std::vector<SessionSummary::ProcessLine> busiestProcesses() const;
    std::vector<std::string> namesIn(const Keys& present, const Keys& absent) const;

    std::string title;
    Date began;
    std::int64_t samples = 0;
    double elapsed = 0; ///< seconds of sampled time
    Readings cpu;
    Readings memory;
    Readings gpu;
    Readings temperature;
    Readings power;
    double swapPeak = 0;
    MemoryPressure pressurePeak = MemoryPressure::normal;
    double diskRead = 0;
    double diskWrite = 0;
    double netIn = 0;
    double netOut = 0;
    std::optional<std::int64_t> batteryStart;
    std::optional<std::int64_t> batteryEnd;
    boost::unordered_flat_map<std::string, App> apps;
    PidMap<SessionSummary::ProcessLine> procs;
    std::optional<Keys> initialApps; ///< running at the first snapshot
    Keys lastApps;                   ///< running at the latest
};

} // namespace ostrivane
