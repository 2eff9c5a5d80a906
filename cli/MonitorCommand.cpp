#include "app/model/AppModel.hpp"
#include "app/model/HistoryClaim.hpp"
#include "cli/Commands.hpp"
#include "cli/HistoryPlace.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "cli/Signals.hpp"
#include "core/history/HistoryStore.hpp"
#include "core/model/Formatters.hpp"
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

constexpr std::chrono::seconds grace{2};    ///< for the last write
constexpr std::chrono::seconds patience{5}; ///< before the history is begun once more

/// The place of the history, made and locked, or why it is not.
std::variant<HistoryLock, std::string> claim(const std::string& folder) {
    auto taken = claimHistory(folder, "ostrivanectl monitor");
    if (auto* lock = std::get_if<HistoryLock>(&taken))
        return std::move(*lock);
    if (const auto* holder = std::get_if<HistoryLock::Holder>(&taken))
        return refusal(*holder);
    return std::get<HistoryLock::Problem>(taken);
}

/// What the model works with: this machine, the user's settings and the desktop.
AppParts ownParts(asio::io_context& context, asio::thread_pool& storing, const std::string& folder) {
    auto machine = nativeMachine();
    Formatters::logicalCores = machine->host().info().coreLayout.logical;
    AppParts parts;
    parts.settings = std::make_unique<AppSettings>(nativeKeyValueStore());
    parts.engine = std::make_unique<SamplingEngine>(context.get_executor(),
                                                    std::make_unique<MachineCollectors>(std::move(machine)),
                                                    nativeClock(context.get_executor()));
    parts.history =
        std::make_unique<HistoryStore>(storing.get_executor(), fmt::format("{}/{}", folder, UserFolders::historyFile));
    parts.notifier = nativeNotifier();
    parts.workspace = nativeWorkspace();
    parts.onMainThread = [&context](std::function<void()> work) { asio::post(context, std::move(work)); };
    return parts;
}

/// Keeps the history, and watches over the machine, until a signal ends it. The engine, the model and the signals share
/// the caller's thread; the store has one of its own, so that a slow disk holds up neither.
class MonitorRun {
public:
    MonitorRun(std::string where, HistoryLock held, std::optional<double> interval)
        : folder(std::move(where)), lock(std::move(held)),
          model(ownParts(context, storing, folder), {.words = wordsOf(nativePlatform()), .interval = interval}) {
        for (const int signal : {SIGTERM, SIGINT, SIGHUP})
            if (!isIgnored(signal))
                signals.add(signal);
        writeError(fmt::format("Keeping the history in {}, a reading every {} s.", model.history().path(),
                               interval.value_or(model.settings()->backgroundInterval)));
        tellOfSettings();
    }

    int run() {
        signals.async_wait([this](const boost::system::error_code& error, int) {
            if (!error)
                end();
        });
        const Subscription watching = model.observe([this](const ModelChanges& changes) {
            if (!changes.snapshot)
                return;
            tellOfSettings();
            look();
        });
        model.start();
        context.run();
        return succeeded;
    }

private:
    /// Says once when something begins to stand in the way of the settings, and once when it has passed.
    void tellOfSettings() {
        const auto problem = model.settings().defaults().problem();
        if (problem == settingsProblem)
            return;
        settingsProblem = problem;
        writeError(problem ? "The settings cannot be read: " + *problem : "The settings can be read again.");
    }

    /// Asks how the store does.
    void look() {
        if (isEnding || isAsking) // a stuck store: questions must not pile up behind its work
            return;
        isAsking = true;
        model.history().problem([this](std::optional<std::string> problem) {
            asio::post(context, [this, problem = std::move(problem)] { report(problem); });
        });
        model.history().isLost([this](bool isLost) {
            asio::post(context, [this, isLost] {
                isAsking = false;
                if (isLost && std::chrono::steady_clock::now() - opened >= patience)
                    begin();
            });
        });
    }

    /// Says once when something begins to stand in the way of keeping the history, and once when it has passed.
    void report(const std::optional<std::string>& problem) {
        if (problem == told || isEnding)
            return;
        told = problem;
        if (lock)
            lock->note(problem.value_or(""));
        writeError(problem ? "The history is not being kept: " + *problem : "The history is being kept again.");
    }

    /// Begins the history once more, where the file could not be opened or is gone.
    void begin() {
        if (isEnding)
            return;
        opened = std::chrono::steady_clock::now();
        if (!told)
            report("the file was removed or replaced; another one is begun");
        lock.reset(); // it may lie in a folder that is gone
        auto claimed = claim(folder);
        if (const auto* problem = std::get_if<std::string>(&claimed))
            return report(*problem);
        lock.emplace(std::move(std::get<HistoryLock>(claimed)));
        model.history().reopen();
    }

    /// Writes what is finished. The file survives it when that takes too long and the program ends in the middle.
    void end() {
        isEnding = true;
        model.engine().stop();
        timeLeft.expires_after(grace);
        timeLeft.async_wait([this](const boost::system::error_code& error) {
            if (error)
                return;
            writeError("The last minutes are not written: " + told.value_or("the file cannot be reached"));
            std::_Exit(failed);
        });
        signals.async_wait([](const boost::system::error_code& error, int) {
            if (!error)
                std::_Exit(failed);
        });
        writeLast();
    }

    /// Tries again while there is time: whoever holds the file may let go of it.
    void writeLast() {
        model.history().flush();
        model.history().problem([this](std::optional<std::string> problem) {
            asio::post(context, [this, problem = std::move(problem)] {
                told = problem;
                if (!problem)
                    return close();
                again.expires_after(std::chrono::milliseconds(200));
                again.async_wait([this](const boost::system::error_code& error) {
                    if (!error)
                        writeLast();
                });
            });
        });
    }

    void close() {
        model.history().close([this] { asio::post(context, [this] { context.stop(); }); });
    }

    const std::string folder;
    std::optional<HistoryLock> lock;
    asio::io_context context{1};
    asio::thread_pool storing{1};
    asio::signal_set signals{context};
    asio::steady_timer timeLeft{context};
    asio::steady_timer again{context};
    AppModel model;
    std::chrono::steady_clock::time_point opened = std::chrono::steady_clock::now(); ///< the history's file
    std::optional<std::string> settingsProblem;
    std::optional<std::string> told; ///< the problem that was reported last
    bool isAsking = false;
    bool isEnding = false;
};

int monitor(std::optional<double> interval) {
    const auto folder = historyFolder();
    if (!folder)
        return failed;
    auto claimed = claim(*folder);
    if (const auto* problem = std::get_if<std::string>(&claimed)) {
        writeError(*problem);
        return failed;
    }
    return MonitorRun(*folder, std::move(std::get<HistoryLock>(claimed)), interval).run();
}

} // namespace

void addMonitorCommand(CLI::App& app, int& status) {
    auto interval = std::make_shared<std::optional<double>>();
    CLI::App* command =
        app.add_subcommand("monitor", "Keep the history of this computer and watch over it, until interrupted");
    command->add_option("--interval", *interval, "Seconds between two readings, in place of what the settings say")
        ->type_name("SECONDS")
        ->check(within(0.1, 60)); // so that no minute goes without a reading
    command->callback([interval, &status] { status = monitor(*interval); });
}

} // namespace ostrivane::cli
