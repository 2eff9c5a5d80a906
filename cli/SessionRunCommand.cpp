#include "cli/Commands.hpp"
#include "cli/ModelRun.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "cli/SessionCommands.hpp"
#include "cli/SessionText.hpp"
#include "cli/Signals.hpp"
#include "core/attribution/PathText.hpp"
#include "core/judgement/SessionSummaryJSON.hpp"
#include "core/model/Text.hpp"
#include "core/model/WholeFile.hpp"
#include "core/sampling/platform/ForegroundChild.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <csignal>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace ostrivane::cli {

namespace {

namespace asio = boost::asio;

constexpr std::chrono::seconds patience{2}; // for the last reading, and for the history after it
constexpr int killedBy = 128;

struct RunRequest {
    Source source;
    std::string name;
    std::string file; ///< of the summary as JSON; empty: none
    std::vector<std::string> command;
};

/// Records while a command runs. It survives what the terminal sends to both, and passes on what reaches it alone.
class SessionRun {
public:
    explicit SessionRun(const RunRequest& wanted)
        : request(wanted), machine(wanted.source, {.history = HistoryAccess::readWrite}), endings(machine.context()),
          children(machine.context(), SIGCHLD), timeLeft(machine.context()) {}

    int run() {
        for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP})
            if (!isIgnored(signal))
                endings.add(signal);
        followEndings();
        followChild();
        AppModel& model = machine.model();
        model.setWindowVisible(true); // as often as somebody looks, at what no page asks for
        // Ahead of the model: its first snapshot, of what ran before the command, is to be the session's first, too.
        model.engine().addConsumer([this](const SharedSnapshot&, const SamplingEngine::Turn& turn) {
            asio::post(machine.context(), [this, turn] { begin(); });
        });
        const Subscription watching = model.observe([this](const ModelChanges& changes) {
            if (changes.snapshot)
                look();
        });
        model.start();
        machine.run();
        return status;
    }

private:
    enum class Phase { waiting, running, readingLast, storing };

    void begin() {
        if (phase != Phase::waiting)
            return;
        ForegroundChild::Failure failure;
        child = ForegroundChild::start(request.command, failure);
        if (!child) {
            writeError(failure.reason);
            return leave(failure.status);
        }
        phase = Phase::running;
        machine.model().startSession(request.name);
        lookAtChild(); // its end may have come ahead of this
    }

    void followChild() {
        children.async_wait([this](const boost::system::error_code& error, int) {
            if (error)
                return;
            lookAtChild();
            followChild();
        });
    }

    void lookAtChild() {
        const auto ended = phase == Phase::running ? child->ended() : std::nullopt;
        if (!ended)
            return;
        status = *ended;
        phase = Phase::readingLast;
        known = machine.model().engine().latest();
        machine.model().engine().refreshNow();
        waitAtMost([this] { finish(); });
    }

    void look() {
        if (phase == Phase::readingLast && machine.model().state().snapshot != known)
            finish();
    }

    void finish() {
        AppModel& model = machine.model();
        phase = Phase::storing;
        model.stopSession();
        tell(*model.state().lastSessionSummary);
        waitAtMost([this] { notStored("the file cannot be reached"); });
        // The row's id may be on its way, and its end follows it.
        machine.afterHistory([this] {
            machine.model().history().problem([this](std::optional<std::string> problem) {
                asio::post(machine.context(), [this, problem = std::move(problem)] {
                    if (problem)
                        notStored(*problem);
                    machine.stop();
                });
            });
        });
    }

    void tell(const SessionSummary& summary) {
        writeNote(Text::trimmed(summaryText(summary, terminalWidth(STDERR_FILENO))));
        if (request.file.empty())
            return;
        if (const auto problem = WholeFile::write(request.file, sessionSummaryJSON(summary) + "\n")) {
            writeError(*problem);
            status = status == succeeded ? failed : status;
        }
    }

    void notStored(const std::string& problem) {
        writeError("The session is not in the history: " + problem);
        machine.stop();
    }

    void followEndings() {
        endings.async_wait([this](const boost::system::error_code& error, int signal) {
            if (error)
                return;
            switch (phase) {
            case Phase::waiting:
                return leave(killedBy + signal);
            case Phase::running:
                if (!isFromKeyboard(signal))
                    child->signal(signal);
                break;
            case Phase::readingLast:
                if (!isFromKeyboard(signal)) // that may be the key that ended the command, heard after its end
                    finish();
                break;
            case Phase::storing:
                machine.stop();
                break;
            }
            followEndings();
        });
    }

    void leave(int answer) {
        status = answer;
        machine.stop();
    }

    template <class Deed>
    void waitAtMost(Deed deed) {
        timeLeft.expires_after(patience);
        timeLeft.async_wait([deed](const boost::system::error_code& error) {
            if (!error)
                deed();
        });
    }

    const RunRequest& request;
    ModelRun machine;
    asio::signal_set endings;
    asio::signal_set children;
    asio::steady_timer timeLeft;
    std::optional<ForegroundChild> child;
    SharedSnapshot known; ///< the last one that began before the end of the command
    Phase phase = Phase::waiting;
    int status = succeeded;
};

int runSession(RunRequest& request) {
    if (request.command.empty()) {
        writeError("session run: no command; it follows \"--\", as in \"ostrivanectl session run -- make\"");
        return misused;
    }
    if (request.name.empty()) // without the arguments, which may hold secrets
        request.name = PathText::lastComponent(request.command.front());
    return SessionRun(request).run();
}

} // namespace

void addSessionRunCommand(CLI::App& session, const std::vector<std::string>& words, int& status) {
    auto request = std::make_shared<RunRequest>();
    request->command = words;
    CLI::App* command = session.add_subcommand("run", "Run a command and record what the computer does meanwhile");
    command->add_option("--name", request->name, "What the session is called, in place of the command")
        ->type_name("NAME");
    command->add_option("--out", request->file, "Write the summary as JSON to a file, too; a file there is replaced")
        ->type_name("FILE")
        ->check([](const std::string& file) { return file.empty() ? "a file must be named" : std::string(); });
    addIntervalOption(*command, request->source, 60);
    command->footer("The command follows \"--\": \"ostrivanectl session run --name Build -- make -j4\".\n"
                    "The summary is printed on standard error and kept in the history. The exit status is that of the\n"
                    "command: 128 and the signal's number when a signal ended it, 127 when it is not found, 126 when\n"
                    "it cannot be run.");
    command->callback([request, &status] { status = runSession(*request); });
}

} // namespace ostrivane::cli
