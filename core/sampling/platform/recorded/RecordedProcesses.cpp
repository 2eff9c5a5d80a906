#include "core/sampling/platform/recorded/RecordedProcesses.hpp"

#include "core/sampling/platform/recorded/Questions.hpp"

#include <algorithm>
#include <utility>

namespace ostrivane {

using Questions::about;

const std::vector<ProcessReading>& RecordedProcesses::all() {
    auto ids = playback.answer<std::vector<std::int32_t>>(Questions::processIDs).value_or(std::vector<std::int32_t>());
    std::ranges::sort(ids);
    for (const ProcessReading& known : readings)
        if (!std::ranges::binary_search(ids, known.info.pid))
            forget(known.info.pid);
    readings.clear();
    readings.reserve(ids.size());
    for (const std::int32_t pid : ids)
        if (auto reading = playback.answer<ProcessReading>(about(Questions::processReading, pid)))
            readings.push_back(*std::move(reading));
    return readings;
}

/// Or a long recording of processes that come and go would fill the memory.
void RecordedProcesses::forget(std::int32_t pid) {
    for (const auto question : {Questions::processReading, Questions::processPath, Questions::processArguments,
                                Questions::responsiblePID, Questions::currentDirectory, Questions::processOrigin})
        playback.forget(about(question, pid));
}

std::optional<std::string> RecordedProcesses::path(std::int32_t pid) {
    return playback.answer<std::string>(about(Questions::processPath, pid));
}

std::optional<std::vector<std::string>> RecordedProcesses::arguments(std::int32_t pid) {
    return playback.answer<std::vector<std::string>>(about(Questions::processArguments, pid));
}

std::int32_t RecordedProcesses::responsiblePID(std::int32_t pid) {
    return playback.answer<std::int32_t>(about(Questions::responsiblePID, pid)).value_or(pid);
}

std::string RecordedProcesses::userName(std::uint32_t uid) {
    return playback.answer<std::string>(about(Questions::userName, uid)).value_or(std::to_string(uid));
}

std::optional<std::string> RecordedProcesses::currentDirectory(std::int32_t pid) {
    return playback.answer<std::string>(about(Questions::currentDirectory, pid));
}

ProcessOrigin RecordedProcesses::origin(std::int32_t pid) {
    return playback.answer<ProcessOrigin>(about(Questions::processOrigin, pid)).value_or(ProcessOrigin());
}

} // namespace ostrivane
