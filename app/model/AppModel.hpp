#pragma once

#include "app/model/AppSettings.hpp"
#include "app/model/AppState.hpp"
#include "app/model/Navigation.hpp"
#include "app/model/Notifier.hpp"
#include "app/model/Subscription.hpp"
#include "app/model/Workspace.hpp"
#include "core/history/HistoryStore.hpp"
#include "core/judgement/AlertEngine.hpp"
#include "core/model/PlatformWords.hpp"
#include "core/sampling/SamplingDemand.hpp"
#include "core/sampling/SamplingEngine.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ostrivane {

/// What an `AppModel` works with. Of those that it owns none is null.
struct AppParts {
    std::unique_ptr<AppSettings> settings;
    std::unique_ptr<SamplingEngine> engine;
    std::unique_ptr<HistoryStore> history;
    std::unique_ptr<Notifier> notifier = std::make_unique<SilentNotifier>();
    std::unique_ptr<Workspace> workspace; ///< null where the engine knows by itself
    /// Has a piece of work done on the main thread, later. Called from any thread.
    std::function<void(std::function<void()>)> onMainThread;
};

/// What falls to this program, and not to another one that runs beside it.
struct Duties {
    bool keepsHistory = true; ///< samples and alerts are stored; sessions are in any case
    bool notifies = true;     ///< alerts are told of outside of the program, too

    friend bool operator==(const Duties&, const Duties&) = default;
};

struct AppModelOptions {
    PlatformWords words = PlatformWords::Linux; ///< of the machine that is shown
    Duties duties{};                            ///< at the start
    std::optional<double> interval;             ///< seconds between two readings, in place of the settings'
    std::function<Date()> now;                  ///< the wall clock when empty
};

/// Which parts of the state an observer should look at again.
struct ModelChanges {
    bool snapshot = false; ///< and what follows from each: `live`, `launchTotals`, `tick`
    bool alerts = false;
    bool insights = false;
    bool health = false;
    bool totals = false;     ///< sums over time, and averages of today
    bool session = false;    ///< begun, ended, or its row known
    bool navigation = false; ///< page, stacks, sidebar, welcome and selections
};

/// The one object that every face of the program observes: takes each snapshot, keeps the live series, fires and stores
/// alerts, judges the machine, records sessions, sums up, and tells the engine who is looking. Lives on the main thread
/// (`AppParts::onMainThread`), where all of it is called and all observers are; never waits for engine or store.
class AppModel {
public:
    AppModel(AppParts parts, AppModelOptions options);
    ~AppModel();
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    /// Begins to read the machine. A second call does nothing.
    void start();

    const AppState& state() const;
    const Navigation& navigation() const;

    AppSettings& settings();
    SamplingEngine& engine();
    HistoryStore& history();
    const AlertEngine& alertEngine() const;

    /// Called once after each step that changed something, with all that it changed. An observer may subscribe and
    /// unsubscribe others.
    Subscription observe(std::function<void(const ModelChanges&)> observer);
    /// Nobody hears of changes any more: for the end of the program.
    void dropObservers();

    /// Takes a snapshot in. The engine's consumer; public for who has snapshots without an engine.
    void apply(const SharedSnapshot& snapshot);

    /// For a program that takes over from another one, or gives way to it.
    void setDuties(Duties duties);

    /// Makes rules, intervals and retention what the settings say. Done by itself when another program changed them.
    void applySettings();

    void setPopoverVisible(bool visible);
    void setWindowVisible(bool visible);
    /// A page appears, or goes, under its raw value. Calls must match: one that goes without having come is missing
    /// when it comes next.
    void registerPage(const std::string& name);
    void unregisterPage(const std::string& name);
    const SamplingDemand& demand() const;

    void select(Page page);
    void goBack();
    void goForward();
    bool isSidebarVisible() const;
    void setSidebarVisible(bool visible);
    bool showsWelcome() const;
    void setShowsWelcome(bool shows);
    /// What the page that navigates wants the next one to show.
    const std::optional<std::string>& selectedAppKey() const;
    void selectApp(std::optional<std::string> key);
    const std::optional<std::int32_t>& selectedProcessPID() const;
    void selectProcess(std::optional<std::int32_t> pid);

    /// Begins to record; one without a name is called "Session". One that is being recorded is ended first.
    void startSession(std::string name);
    /// Ends the recording and writes it to the history; nothing without one.
    void stopSession();

    void clearAlerts();

    /// Asks the history for the totals anew.
    void refreshTotals();

private:
    struct State;
    std::shared_ptr<State> self;
};

} // namespace ostrivane
