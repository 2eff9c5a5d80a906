#include "core/sampling/ProcessCollector.hpp"

#include "core/attribution/ControlGroupUnit.hpp"
#include "core/attribution/KeyFile.hpp"
#include "core/attribution/PathText.hpp"
#include "core/attribution/RunningApplications.hpp"
#include "core/attribution/UnitLeaders.hpp"
#include "core/model/MachTime.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrivane {

namespace {

constexpr double sameStartSeconds = 1; ///< starts that differ by less are those of one process
constexpr double activeCores = 0.01;   ///< more is work
constexpr double activeTraffic = 2048; ///< bytes per second; more is work
constexpr int originReadings = 2;
constexpr double nanosPerSecond = 1e9;

const char* stateName(std::uint32_t status) {
    switch (status) {
    case ProcessInfo::starting:
        return "Starting";
    case ProcessInfo::running:
        return "Running";
    case ProcessInfo::sleeping:
        return "Sleeping";
    case ProcessInfo::stopped:
        return "Stopped";
    default:
        return "Unknown";
    }
}

std::optional<std::string> joined(const std::optional<std::vector<std::string>>& arguments) {
    if (!arguments)
        return std::nullopt;
    std::size_t size = arguments->size();
    for (const std::string& argument : *arguments)
        size += argument.size();
    std::string line;
    line.reserve(size);
    for (const std::string& argument : *arguments) {
        if (&argument != &arguments->front())
            line += ' ';
        line += argument;
    }
    return line;
}

/// The application's name in the notes of a flatpak sandbox.
std::optional<std::string> flatpakID(std::string_view notes) {
    const auto application = KeyFile::group(notes, "Application");
    std::string name = application ? KeyFile::text(KeyFile::value(*application, "name")) : std::string();
    return name.empty() ? std::nullopt : std::optional(std::move(name));
}

/// A process has written one text over the arguments that it was started with.
bool isTitle(const std::optional<std::vector<std::string>>& now,
             const std::optional<std::vector<std::string>>& before) {
    return now && before && now->size() == 1 && before->size() > 1;
}

/// Per second; 0 for a counter that fell.
double rate(std::uint64_t now, std::uint64_t before, double seconds) {
    return now > before ? static_cast<double>(now - before) / seconds : 0;
}

} // namespace

ProcessCollector::ProcessCollector(Processes& asked, ProjectDetector& projectDetector,
                                   std::shared_ptr<const AppRules> appRules, const Options& chosen)
    : processes(asked), projects(projectDetector), rules(std::move(appRules)), options(chosen) {}

void ProcessCollector::setRules(std::shared_ptr<const AppRules> appRules) {
    rules = std::move(appRules);
    for (auto& [pid, process] : known)
        process->needsKeys = true;
}

ProcessOutput ProcessCollector::sample(double now, const Joined& joinedFigures, bool refreshProjects,
                                       const PIDSet& listeningPIDs) {
    ++round;
    living.clear();
    ProcessOutput output;
    const std::vector<ProcessReading>& readings = processes.all();
    output.processes.reserve(readings.size());
    output.lifetimeCPUSeconds.reserve(readings.size());
    for (const ProcessReading& reading : readings) {
        if (reading.info.status == ProcessInfo::zombie)
            continue;
        Known& process = recall(reading, now);
        ProcessSnapshot& record = output.processes.emplace_back();
        record.pid = reading.info.pid;
        record.ppid = reading.info.ppid;
        record.responsiblePID = process.responsiblePID;
        record.name = process.displayName;
        record.path = process.grouping.path;
        record.user = process.user;
        record.uid = process.uid;
        record.startTime = process.start;
        record.state = stateName(reading.info.status);
        record.commandLine = joined(process.arguments);
        record.isRestricted = !reading.usage;
        record.isDevProcess = process.dev.has_value();
        if (process.dev)
            record.devKind = std::string(process.dev->kind);
        takeUsage(process, reading, record, now);
        if (reading.usage)
            output.lifetimeCPUSeconds.emplace(record.pid,
                                              MachTime::seconds(reading.usage->cpuTicks, options.nanosPerTick));
        else
            ++output.restrictedCount;
        join(reading, record, joinedFigures);
        lookUpProject(process, record, refreshProjects, listeningPIDs.contains(record.pid));
        const double traffic = record.netInRate.value_or(0) + record.netOutRate.value_or(0);
        if (record.isDevProcess && (record.cpu > activeCores || traffic > activeTraffic))
            process.lastActive = now;
        living.push_back(&process);
    }
    assignApplications(output.processes);
    if (rules->installed)
        output.desktopApps = desktopApps(output.processes);
    forgetTheGone();
    return output;
}

/// What is known of the process; nothing yet of a new one, and of one whose id belonged to another before.
ProcessCollector::Known& ProcessCollector::recall(const ProcessReading& reading, double now) {
    const ProcessInfo& info = reading.info;
    std::unique_ptr<Known>& slot = known[info.pid];
    const bool isNew = !slot || std::abs(slot->start - info.startTime) >= sameStartSeconds ||
                       slot->rawStart != info.rawStart; // ids can come round within a second
    if (isNew) {
        slot = std::make_unique<Known>();
        slot->firstSeen = now;
    }
    // Another name or owner: the process has become another program since, as a shell's child does right after its
    // start. While it is young it may have become one of the same name.
    if (isNew || slot->grouping.name != info.name || slot->uid != info.uid ||
        (slot->originReads == 1 && processes.path(info.pid) != slot->grouping.path))
        readStatics(*slot, info);
    if (slot->originReads < originReadings)
        readOrigin(*slot, info);
    slot->seenIn = round;
    return *slot;
}

void ProcessCollector::readStatics(Known& process, const ProcessInfo& info) {
    process.start = info.startTime;
    process.rawStart = info.rawStart;
    process.uid = info.uid;
    process.originReads = 0;
    const bool isOwn = info.uid == options.userID;
    std::optional<std::string> path;
    if (info.isKernelThread) { // no program; and it takes a new name with each piece of work
        process.originReads = originReadings;
    } else {
        path = processes.path(info.pid);
        auto arguments = isOwn ? processes.arguments(info.pid) : std::nullopt;
        const bool isSameProgram = path && path == process.grouping.path;
        if (!isSameProgram || !isTitle(arguments, process.arguments)) { // else it only calls itself something else
            process.arguments = std::move(arguments);
            process.cwd.reset();
            process.projectKey.reset();
            process.dev = isOwn ? DevClassifier::classify(info.name, path, process.arguments) : std::nullopt;
        }
    }
    process.responsiblePID = processes.responsiblePID(info.pid);
    process.user = processes.userName(info.uid);
    process.grouping = {.pid = info.pid,
                        .ppid = info.ppid,
                        .responsiblePID = process.responsiblePID,
                        .name = info.name,
                        .path = std::move(path),
                        .unit = {},
                        .isOwn = isOwn,
                        .hasTerminal = info.hasTerminal,
                        .isKernelThread = info.isKernelThread,
                        .foreignRoot = false,
                        .flatpakID = {},
                        .appImage = {},
                        .firstArgument = process.arguments && !process.arguments->empty()
                                             ? std::optional(process.arguments->front())
                                             : std::nullopt};
    nameAfter(process, info);
    process.needsKeys = true;
}

void ProcessCollector::readOrigin(Known& process, const ProcessInfo& info) {
    ++process.originReads;
    ProcessOrigin origin = processes.origin(info.pid);
    ControlGroupUnit unit = ControlGroupUnit::parse(origin.controlGroups);
    process.grouping.unit = std::move(unit);
    process.grouping.foreignRoot = origin.foreignRoot;
    process.grouping.appImage = std::move(origin.appImage);
    process.grouping.flatpakID = origin.flatpakInfo ? flatpakID(*origin.flatpakInfo) : std::nullopt;
    process.needsKeys = true;
}

/// The short command name is cut off at the system's limit: then the path has the whole of it.
void ProcessCollector::nameAfter(Known& process, const ProcessInfo& info) {
    process.displayName = info.name;
    const std::optional<std::string>& path = process.grouping.path;
    if (!path)
        return;
    const std::string_view base = PathText::lastComponent(*path);
    if (info.name.size() < base.size() && base.starts_with(info.name))
        process.displayName = base;
}

void ProcessCollector::takeUsage(Known& process, const ProcessReading& reading, ProcessSnapshot& record,
                                 double now) const {
    if (!reading.usage)
        return;
    const ProcessUsage& usage = *reading.usage;
    record.memory = usage.footprint;
    record.diskReadTotal = usage.diskRead;
    record.diskWriteTotal = usage.diskWritten;
    record.threads = reading.threads;
    if (process.previous && process.previous->time < now) {
        const ProcessUsage& before = process.previous->usage;
        const double seconds = now - process.previous->time;
        if (usage.cpuTicks > before.cpuTicks)
            record.cpu = MachTime::seconds(usage.cpuTicks - before.cpuTicks, options.nanosPerTick) / seconds;
        if (usage.energyNJ != 0 || before.energyNJ != 0)
            record.powerW = rate(usage.energyNJ, before.energyNJ, seconds) / nanosPerSecond;
    }
    process.previous = Previous{usage, now};
    takeDiskRates(process, reading, record, now);
}

/// The totals may be older than the rest: what was added since they were last read is shared out over all that time.
void ProcessCollector::takeDiskRates(Known& process, const ProcessReading& reading, ProcessSnapshot& record,
                                     double now) {
    if (!reading.diskIsFresh)
        return;
    const ProcessUsage& usage = *reading.usage;
    if (process.disk && process.disk->time < now) {
        const double seconds = now - process.disk->time;
        record.diskReadRate = rate(usage.diskRead, process.disk->read, seconds);
        record.diskWriteRate = rate(usage.diskWritten, process.disk->written, seconds);
    }
    process.disk = DiskTotals{usage.diskRead, usage.diskWritten, now};
}

void ProcessCollector::join(const ProcessReading& reading, ProcessSnapshot& record, const Joined& figures) const {
    if (record.isRestricted && figures.systemEntries)
        if (const auto entry = figures.systemEntries->find(record.pid); entry != figures.systemEntries->end()) {
            record.cpu = entry->second.cpu;
            record.memory = entry->second.rss;
            record.memoryIsRSS = true;
        }
    if (record.isRestricted && options.restrictedHidesTraffic)
        return;
    if (figures.network) {
        const auto entry = figures.network->find(reading.info.pid);
        const TrafficRates rates = entry == figures.network->end() ? TrafficRates{} : entry->second;
        record.netInRate = rates.in;
        record.netOutRate = rates.out;
    }
    if (figures.gpu) {
        const auto entry = figures.gpu->find(reading.info.pid);
        record.gpu = entry == figures.gpu->end() ? 0 : entry->second;
    }
}

void ProcessCollector::lookUpProject(Known& process, ProcessSnapshot& record, bool refresh, bool listens) {
    if (process.uid != options.userID || (!process.dev && !listens))
        return;
    if (refresh || (!process.cwd && !process.projectKey)) {
        process.cwd = processes.currentDirectory(record.pid);
        process.projectKey = projects.project(process.cwd, process.arguments);
    }
    record.cwd = process.cwd;
    record.projectKey = process.projectKey;
    if (!process.dev && process.projectKey) { // it listens for a project: that is development
        record.isDevProcess = true;
        record.devKind = record.name;
    }
}

void ProcessCollector::assignApplications(std::vector<ProcessSnapshot>& records) {
    std::vector<UnitMember> members;
    members.reserve(living.size());
    for (std::size_t index = 0; index < living.size(); ++index)
        members.push_back({.pid = records[index].pid,
                           .start = static_cast<std::uint64_t>(std::max(living[index]->start.seconds * 1000, 0.0)),
                           .unit = living[index]->grouping.unit.group});
    const std::vector<std::int32_t> leaders = unitLeaders(members);
    std::vector<AppGrouper::Process> grouped;
    grouped.reserve(living.size());
    for (std::size_t index = 0; index < living.size(); ++index) {
        Known& process = *living[index];
        ProcessSnapshot& record = records[index];
        if (std::exchange(process.needsKeys, false))
            process.own = AppGrouper::ownKeys(process.grouping, *rules);
        if (!process.grouping.unit.group.empty())
            record.responsiblePID = leaders[index];
        grouped.push_back(
            {.pid = record.pid, .ppid = record.ppid, .responsiblePID = record.responsiblePID, .own = &process.own});
    }
    const std::vector<std::string_view> keys = AppGrouper::assign(grouped, *rules);
    for (std::size_t index = 0; index < keys.size(); ++index)
        records[index].appKey = keys[index].empty() ? AppGrouper::systemKey : keys[index];
}

RunningApps ProcessCollector::desktopApps(const std::vector<ProcessSnapshot>& records) const {
    std::vector<GroupedProcess> grouped;
    grouped.reserve(records.size());
    for (std::size_t index = 0; index < records.size(); ++index)
        grouped.push_back({.key = records[index].appKey,
                           .pid = records[index].pid,
                           .start = living[index]->start,
                           .leader = records[index].responsiblePID,
                           .unit = &living[index]->grouping.unit});
    return runningApplications(grouped, *rules->installed);
}

void ProcessCollector::forgetTheGone() {
    if (known.size() == living.size())
        return;
    boost::unordered::erase_if(known, [this](const auto& entry) { return entry.second->seenIn != round; });
}

ProcessCollector::Activity ProcessCollector::activity(std::int32_t pid, double now) const {
    const auto found = known.find(pid);
    if (found == known.end())
        return {};
    const Known& process = *found->second;
    return {process.lastActive ? std::optional(now - *process.lastActive) : std::nullopt, now - process.firstSeen};
}

void ProcessCollector::refreshWorkingDirectory(std::int32_t pid) {
    if (const auto found = known.find(pid); found != known.end()) {
        found->second->cwd.reset();
        found->second->projectKey.reset();
    }
}

} // namespace ostrivane
