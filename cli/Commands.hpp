#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace ostrivane::cli {

/// What a command answers to the shell.
enum ExitStatus {
    succeeded = 0,
    failed = 1, ///< the request failed; the reason stands on standard error
    misused = 2 ///< the arguments are wrong
};

/// Each adds one subcommand with its options to `app`. When it is chosen, `status` becomes its exit status.
void addSnapshotCommand(CLI::App& app, int& status);
void addProcessesCommand(CLI::App& app, int& status);
void addAppsCommand(CLI::App& app, int& status);
void addWatchCommand(CLI::App& app, int& status);
void addRecordCommand(CLI::App& app, int& status);
void addMonitorCommand(CLI::App& app, int& status);
void addHistoryCommand(CLI::App& app, int& status);
void addSettingsCommand(CLI::App& app, int& status);
void addHealthCommand(CLI::App& app, int& status);
void addInsightsCommand(CLI::App& app, int& status);
void addAlertsCommand(CLI::App& app, int& status);
/// @param command  what stands behind "--", for "session run"
void addSessionCommand(CLI::App& app, const std::vector<std::string>& command, int& status);

/// The whole program: parses the arguments, runs the command and answers the exit status.
int run(int argc, const char* const* argv);

} // namespace ostrivane::cli
