#include "cli/Commands.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "core/history/HistoryLock.hpp"
#include "core/history/HistoryStore.hpp"
#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/platform/NativeMachine.hpp"
#include "core/sampling/platform/UserFolders.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>
#include <fmt/format.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace ostrivane::cli {

namespace {

namespace asio = boost::asio;

constexpr std::chrono::seconds grace{2}; ///< for the last write

/// Says once when something begins to stand in the way of keeping the history, and once when it has passed.
class ProblemReport {
public:
    explicit ProblemReport(const HistoryLock& held) : lock(held) {}

    void take(const std::optional<std::string>& problem) {
        if (problem == told)
            return;
        told = problem;
        lock.note(problem.value_or(""));
        writeError(problem ? "The history is not being kept: " + *problem : "The history is being kept again.");
    }

private:
    const HistoryLock& lock;
    std::optional<std::string> told;
};

/// What whoever started the program had it ignore stays ignored: "nohup" is such a wish.
bool isIgnored(int signal) {
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// Keeps the history until a signal ends it. The engine and the signals share the caller's thread; the store has one of
/// its own, so that a slow disk holds up neither.
class MonitorRun {
public:
    MonitorRun(const HistoryLock& lock, std::string file, double interval)
        : report(lock), store(std::make_unique<HistoryStore>(storing.get_executor(), std::move(file))),
          engine(context.get_executor(), std::make_unique<MachineCollectors>(nativeMachine()),
                 nativeClock(context.get_executor())) {
        engine.setSettings({.backgroundInterval = interval});
        for (const int signal : {SIGTERM, SIGINT, SIGHUP})
            if (!isIgnored(signal))
                signals.add(signal);
        writeError(fmt::format("Keeping the history in {}, a reading every {} s.", store->path(), interval));
    }

    int run() {
        signals.async_wait([this](const boost::system::error_code& error, int) {
            if (!error)
                end();
        });
        engine.addConsumer([this](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) { keep(snapshot); });
        engine.start();
        context.run();
        return succeeded;
    }

private:
    void keep(const SharedSnapshot& snapshot) {
        if (isEnding)
            return;
        store->ingest(snapshot);
        // While the store is stuck, questions must not pile up behind its work.
        if (!isAsking.exchange(true))
            store->problem([this](const std::optional<std::string>& problem) {
                isAsking = false;
                report.take(problem);
            });
    }

    /// Writes what is finished. The file survives it when that takes too long and the program ends in the middle.
    void end() {
        isEnding = true;
        engine.stop();
        timeLeft.expires_after(grace);
        const auto leave = [](const boost::system::error_code& error, auto...) {
            if (!error)
                std::_Exit(succeeded);
        };
        timeLeft.async_wait(leave);
        signals.async_wait(leave);
        // The file is closed over there, too: this thread never waits for a disk.
        store->flush([this] {
            asio::post(storing, [this] {
                store.reset();
                asio::post(storing, [this] { asio::post(context, [this] { context.stop(); }); });
            });
        });
    }

    ProblemReport report; ///< used on the store's thread
    std::atomic<bool> isAsking = false;
    asio::io_context context{1};
    asio::thread_pool storing{1};
    asio::signal_set signals{context};
    asio::steady_timer timeLeft{context};
    std::unique_ptr<HistoryStore> store;
    SamplingEngine engine;
    bool isEnding = false;
};

std::string refusal(const HistoryLock::Holder& holder) {
    if (holder.pid == 0)
        return "Another program keeps the history.";
    return fmt::format("Another program keeps the history: {} (process {}).", holder.name, holder.pid);
}

int monitor(double interval) {
    const auto folder = UserFolders::dataDirectory();
    if (!folder) {
        writeError("No folder for the history: neither HOME nor OSTRIVANE_DATA_DIR names one.");
        return failed;
    }
    if (const auto problem = UserFolders::makeDataDirectory(*folder)) {
        writeError(*problem);
        return failed;
    }
    const auto taken = HistoryLock::take(*folder, "ostrivanectl monitor");
    if (const auto* holder = std::get_if<HistoryLock::Holder>(&taken)) {
        writeError(refusal(*holder));
        return failed;
    }
    if (const auto* problem = std::get_if<HistoryLock::Problem>(&taken)) {
        writeError(*problem);
        return failed;
    }
    const std::string file = fmt::format("{}/{}", *folder, UserFolders::historyFile);
    return MonitorRun(std::get<HistoryLock>(taken), file, interval).run();
}

} // namespace

void addMonitorCommand(CLI::App& app, int& status) {
    auto source = std::make_shared<Source>(Source{.interval = SamplingSettings().backgroundInterval});
    CLI::App* command = app.add_subcommand("monitor", "Keep the history of this computer, until interrupted");
    addIntervalOption(*command, *source, 60); // so that no minute goes without a reading
    command->callback([source, &status] { status = monitor(source->interval); });
}

} // namespace ostrivane::cli
