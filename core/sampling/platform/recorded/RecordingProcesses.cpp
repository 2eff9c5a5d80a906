#include "core/sampling/platform/recorded/RecordingProcesses.hpp"

#include "core/sampling/platform/recorded/Questions.hpp"

namespace ostrivane {

using Questions::about;

const std::vector<ProcessReading>& RecordingProcesses::all() {
    const std::vector<ProcessReading>& readings = asked.all();
    std::vector<std::int32_t> ids;
    ids.reserve(readings.size());
    auto before = noted.begin();
    for (const ProcessReading& reading : readings) {
        ids.push_back(reading.info.pid);
        while (before != noted.end() && before->info.pid < reading.info.pid)
            ++before;
        if (before == noted.end() || *before != reading)
            notes.keep(about(Questions::processReading, reading.info.pid), reading);
    }
    notes.keep(Questions::processIDs, ids);
    noted = readings;
    return readings;
}

std::optional<std::string> RecordingProcesses::path(std::int32_t pid) {
    return notes.keep(about(Questions::processPath, pid), asked.path(pid));
}

std::optional<std::vector<std::string>> RecordingProcesses::arguments(std::int32_t pid) {
    return notes.keep(about(Questions::processArguments, pid), asked.arguments(pid));
}

std::int32_t RecordingProcesses::responsiblePID(std::int32_t pid) {
    return notes.keep(about(Questions::responsiblePID, pid), asked.responsiblePID(pid));
}

std::string RecordingProcesses::userName(std::uint32_t uid) {
    std::string name = asked.userName(uid);
    if (namedUsers.insert(uid).second) // asked for each of their processes, and always the same
        notes.keep(about(Questions::userName, uid), name);
    return name;
}

std::optional<std::string> RecordingProcesses::currentDirectory(std::int32_t pid) {
    return notes.keep(about(Questions::currentDirectory, pid), asked.currentDirectory(pid));
}

ProcessOrigin RecordingProcesses::origin(std::int32_t pid) {
    return notes.keep(about(Questions::processOrigin, pid), asked.origin(pid));
}

} // namespace ostrivane
