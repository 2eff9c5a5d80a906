#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Names of the questions in a recording. A name keeps its meaning for good: a question whose answer changes its shape
/// gets a new one.
namespace ostrivane::Questions {

constexpr std::string_view uptime = "host.uptime";
constexpr std::string_view ticks = "processor.ticks";
constexpr std::string_view loadAverage = "processor.loadAverage";
constexpr std::string_view memory = "memory.reading";
constexpr std::string_view accelerators = "graphics.accelerators";
constexpr std::string_view graphicsTimes = "graphics.processTimes";

constexpr std::string_view processIDs = "processes.ids";
constexpr std::string_view userName = "processes.userName"; // by uid
constexpr std::string_view systemTotals = "systemProcesses.totals";
constexpr std::string_view traffic = "sockets.traffic";
constexpr std::string_view installed = "applications.installed";
constexpr std::string_view bundleFacts = "applications.bundleFacts"; // by path

// By process.
constexpr std::string_view processReading = "processes.reading";
constexpr std::string_view processPath = "processes.path";
constexpr std::string_view processArguments = "processes.arguments";
constexpr std::string_view responsiblePID = "processes.responsiblePID";
constexpr std::string_view currentDirectory = "processes.currentDirectory";
constexpr std::string_view processOrigin = "processes.origin";

// By path.
constexpr std::string_view fileExists = "files.exists";
constexpr std::string_view folderList = "files.list";
constexpr std::string_view fileText = "files.read";

/// The question about one of many things.
inline std::string about(std::string_view question, std::string_view thing) {
    return std::string(question).append(1, ':').append(thing);
}
inline std::string about(std::string_view question, std::int64_t id) {
    return about(question, std::to_string(id));
}

} // namespace ostrivane::Questions
