#include "cli/Commands.hpp"

#include "cli/Output.hpp"
#include "core/Version.hpp"
#include "core/model/Text.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <csignal>
#include <exception>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace ostrivane::cli {

namespace {

/// A file opened later must not become standard input, output or error because that one is closed: what is meant for
/// people would be written into it. The other way round, so that using them still fails.
void keepStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(descriptor, F_GETFD) < 0)
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

/// What stands behind the "--" of "session run", which is then no argument of ours: the parser would read a meaning
/// into it.
std::vector<std::string> takeCommand(int& argc, const char* const* argv) {
    const std::vector<std::string> words(argv, argv + argc);
    const auto mark = std::ranges::find(words, "--");
    if (mark - words.begin() < 3 || words[1] != "session" || words[2] != "run" || mark == words.end())
        return {};
    argc = static_cast<int>(mark - words.begin());
    return {mark + 1, words.end()};
}

} // namespace

int run(int argc, const char* const* argv) {
    keepStandardDescriptors();
    // A closed pipe and a limit on the size of files are told by the failed write, which a command can end on in order.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    CLI::App app("Ostrivane in the terminal: what this computer does now, as text, as JSON and live.", "ostrivanectl");
    app.set_version_flag("--version", std::string(version));
    app.require_subcommand(1);
    int status = succeeded;
    addSnapshotCommand(app, status);
    addProcessesCommand(app, status);
    addAppsCommand(app, status);
    addWatchCommand(app, status);
    addRecordCommand(app, status);
    addMonitorCommand(app, status);
    addHistoryCommand(app, status);
    addSettingsCommand(app, status);
    addHealthCommand(app, status);
    addInsightsCommand(app, status);
    addAlertsCommand(app, status);
    const std::vector<std::string> command = takeCommand(argc, argv);
    addSessionCommand(app, command, status);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::ostringstream text, problem;
        const bool asked = app.exit(error, text, problem) == 0; // help, or the version
        if (!asked) {
            writeError(Text::trimmed(problem.str()));
            return misused;
        }
        return writeOut(text.str()) == Written::failed ? failed : succeeded;
    } catch (const std::exception& error) { // out of memory, at the most
        writeError(error.what());
        return failed;
    }
    return status;
}

} // namespace ostrivane::cli
