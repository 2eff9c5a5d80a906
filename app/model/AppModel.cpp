#include "app/model/AppModel.hpp"

#include "app/model/AlertList.hpp"
#include "app/model/BatteryDrain.hpp"
#include "app/model/DemandBook.hpp"
#include "app/model/HistorySums.hpp"
#include "app/model/SessionLog.hpp"
#include "core/judgement/Figures.hpp"
#include "core/judgement/HealthEvaluator.hpp"
#include "core/judgement/InsightEngine.hpp"
#include "core/judgement/SessionSummaryJSON.hpp"
#include "core/model/Calendar.hpp"

#include <boost/signals2/signal.hpp>

#include <algorithm>
#include <atomic>
#include <utility>

namespace ostrivane {

namespace {

constexpr std::int64_t judgeEvery = 6; // snapshots, while nobody looks
constexpr double totalsSeconds = 60;   // between two questions
constexpr double shortestPause = 0.1;  // seconds between two readings
constexpr double longestPause = 3600;
constexpr std::int64_t storedAlerts = 200; // shown at the start
constexpr std::string_view sidebarKey = "sidebarVisible";
constexpr std::string_view namelessSession = "Session";

/// Takes over a value that differs.
template <class Value>
bool assign(Value& present, Value fresh) {
    if (present == fresh)
        return false;
    present = std::move(fresh);
    return true;
}

} // namespace

/// Touched on the main thread only.
struct AppModel::State : std::enable_shared_from_this<State> {
    State(AppParts parts, AppModelOptions chosen)
        : options(std::move(chosen)), onMainThread(std::move(parts.onMainThread)), settings(std::move(parts.settings)),
          history(std::move(parts.history)), notifier(std::move(parts.notifier)), workspace(std::move(parts.workspace)),
          engine(std::move(parts.engine)), alertEngine(AlertRule::defaults, options.words),
          isSidebarVisible(settings->defaults().boolean(sidebarKey).value_or(true)) {
        if (!options.now)
            options.now = Calendar::now;
        setDuties(options.duties);
        shown.snapshot = std::make_shared<SystemSnapshot>(SystemSnapshot::empty(options.now()));
    }

    /// Makes a handler, to be called from any thread, that has `work(state, answer)` done on the main thread.
    template <class Work>
    auto later(Work work) {
        return [weak = weak_from_this(), post = onMainThread, work = std::move(work)](auto answer) {
            post([weak, work, answer = std::move(answer)] {
                if (const auto model = weak.lock())
                    work(*model, answer);
            });
        };
    }

    void publish(const ModelChanges& changes) { changed(changes); }

    void start() {
        if (hasStarted)
            return;
        hasStarted = true;
        applySettings();
        engine->addConsumer(
            [store = history, keeps = keepsHistory](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) {
                if (*keeps)
                    store->ingest(snapshot);
            });
        // The turn is held until the snapshot is taken in: a main thread that is late is not buried under snapshots.
        // The settings are looked at on the engine's thread, as their file may lie on a slow disk.
        engine->addConsumer([weak = weak_from_this(), post = onMainThread, mayDiffer = settings->defaults().watch()](
                                const SharedSnapshot& snapshot, const SamplingEngine::Turn& turn) {
            post([weak, snapshot, turn, settingsMayDiffer = mayDiffer()] {
                const auto model = weak.lock();
                if (!model)
                    return;
                if (settingsMayDiffer)
                    model->followSettings();
                model->apply(snapshot);
            });
        });
        engine->start();
        if (workspace)
            workspace->observe([weak = weak_from_this()](RunningApps apps) {
                if (const auto model = weak.lock())
                    model->engine->setRunningApps(std::move(apps));
            });
        loadStoredAlerts();
        refreshTotals();
    }

    void setDuties(Duties fresh) {
        duties = fresh;
        *keepsHistory = duties.keepsHistory;
    }

    void followSettings() {
        const Preferences before = **settings;
        settings->reload();
        if (!(before == **settings))
            applySettings();
    }

    void applySettings() {
        alertEngine.update((*settings)->alertRules);
        SamplingSettings sampling = settings->sampling();
        // A file may hold any number; not every one is a pause.
        sampling.backgroundInterval = std::clamp(sampling.backgroundInterval, shortestPause, longestPause);
        sampling.foregroundInterval = std::clamp(sampling.foregroundInterval, shortestPause, longestPause);
        if (options.interval)
            sampling.backgroundInterval = sampling.foregroundInterval = *options.interval;
        engine->setSettings(sampling);
        history->setRetention((*settings)->retentionDays);
    }

    void apply(const SharedSnapshot& snapshot) {
        ModelChanges changes{.snapshot = true};
        shown.snapshot = snapshot;
        ++shown.tick;
        if (snapshot->interval > 0) {
            shown.hasFirstSample = true;
            shown.live.add(*snapshot);
            addToLaunchTotals(*snapshot);
        }
        if (const auto fired = alertEngine.evaluate(*snapshot); !fired.empty()) {
            handle(fired);
            changes.alerts = true;
        }
        if (shown.session)
            shown.session->add(*snapshot);
        if (demand.demand().anyUI() || shown.tick % judgeEvery == 0)
            judge(*snapshot, changes);
        const double sinceTotals = options.now() - lastTotalsRefresh;
        if (sinceTotals > totalsSeconds || sinceTotals < 0) // ahead of the clock: it was set back
            refreshTotals();
        publish(changes);
    }

    void addToLaunchTotals(const SystemSnapshot& snapshot) {
        Totals& totals = shown.launchTotals;
        Figures::grow(totals.diskRead, snapshot.disk.readBytesPerSec * snapshot.interval);
        Figures::grow(totals.diskWrite, snapshot.disk.writeBytesPerSec * snapshot.interval);
        Figures::grow(totals.netIn, snapshot.network.inRate * snapshot.interval);
        Figures::grow(totals.netOut, snapshot.network.outRate * snapshot.interval);
    }

    void handle(const std::vector<Alert>& fired) {
        AlertList::add(shown.alerts, fired);
        for (const Alert& alert : fired) {
            if (duties.keepsHistory)
                history->recordAlert(alert.date, std::string(rawValue(alert.kind)),
                                     std::string(rawValue(alert.severity)), alert.title, alert.body, alert.subject);
            if (duties.notifies && alert.notify && (*settings)->notificationsEnabled)
                notifier->post(alert);
        }
    }

    void judge(const SystemSnapshot& snapshot, ModelChanges& changes) {
        std::optional<double> pressureElevatedFor;
        if (const auto since = alertEngine.pressureElevatedSince())
            pressureElevatedFor = snapshot.timestamp.seconds - *since;
        const auto cpuAverage5m = shown.live.average(LiveKey::cpu, LiveSeries::window);
        const InsightContext context{.pressureElevatedFor = pressureElevatedFor,
                                     .currentDrainPerHour = currentDrainPerHour(),
                                     .typicalDrainPerHour = shown.typicalDrainPerHour,
                                     .storageGrowth = shown.storageGrowth,
                                     .cpuAverage5m = cpuAverage5m};
        changes.insights = assign(shown.insights, InsightEngine::insights(snapshot, context, options.words));
        changes.health =
            assign(shown.health, HealthEvaluator::evaluate(snapshot, cpuAverage5m, pressureElevatedFor, options.words));
    }

    std::optional<double> currentDrainPerHour() const {
        if (shown.snapshot->battery.state != BatterySnapshot::State::discharging)
            return std::nullopt;
        return BatteryDrain::current(shown.live[LiveKey::battery]);
    }

    void loadStoredAlerts() {
        history->alerts(storedAlerts, later([](State& model, const std::vector<StoredAlert>& stored) {
                            if (model.alertsCleared || stored.empty())
                                return;
                            AlertList::addStored(model.shown.alerts, stored);
                            model.publish({.alerts = true});
                        }));
    }

    void clearAlerts() {
        alertsCleared = true;
        shown.alerts.clear();
        history->clearAlerts();
        publish({.alerts = true});
    }

    void refreshTotals() {
        lastTotalsRefresh = options.now();
        askHistorySums(*history, options.now, later([](State& model, const std::optional<HistorySums>& sums) {
            if (sums)
                model.take(*sums);
        }));
    }

    void take(const HistorySums& sums) {
        bool differs = assign(shown.todayTotals, sums.today);
        differs |= assign(shown.weekTotals, sums.week);
        differs |= assign(shown.monthTotals, sums.month);
        differs |= assign(shown.cpuAverageToday, sums.cpuAverageToday);
        differs |= assign(shown.gpuStatsToday, sums.gpuStatsToday);
        differs |= assign(shown.typicalDrainPerHour, sums.typicalDrainPerHour);
        if (differs)
            publish({.totals = true});
    }

    void startSession(std::string name) {
        stopSession();
        if (name.empty())
            name = namelessSession;
        const Date start = options.now();
        shown.session.emplace(name, start);
        shown.sessionID = 0;
        sessions.begin(std::move(name), start, [weak = weak_from_this()](std::int64_t id) {
            if (const auto model = weak.lock()) {
                model->shown.sessionID = id;
                model->publish({.session = true});
            }
        });
        publish({.session = true});
    }

    void stopSession() {
        if (!shown.session)
            return;
        const Date end = options.now();
        SessionSummary summary = shown.session->summary(end);
        shown.session.reset();
        sessions.end(end, sessionSummaryJSON(summary));
        shown.lastSessionSummary = std::move(summary);
        publish({.session = true});
    }

    /// A step to another page.
    template <class Step>
    void turn(Step step) {
        const Page before = pages.selectedPage();
        step();
        if (pages.selectedPage() != before)
            publish({.navigation = true});
    }

    /// After each change of the demand, and also when it is the same as before.
    void tellDemand() { engine->setDemand(demand.demand()); }

    AppModelOptions options;
    Duties duties;
    const std::shared_ptr<std::atomic<bool>> keepsHistory = std::make_shared<std::atomic<bool>>(); ///< for the engine
    const std::function<void(std::function<void()>)> onMainThread;
    const std::unique_ptr<AppSettings> settings;
    const std::shared_ptr<HistoryStore> history; ///< shared with the engine's consumer, which may run on for a moment
    SessionLog sessions{history, onMainThread};
    const std::unique_ptr<Notifier> notifier;
    const std::unique_ptr<Workspace> workspace;
    const std::unique_ptr<SamplingEngine> engine;
    AlertEngine alertEngine;

    AppState shown;
    Navigation pages;
    DemandBook demand;
    bool isSidebarVisible;
    bool showsWelcome = false;
    std::optional<std::string> selectedAppKey;
    std::optional<std::int32_t> selectedProcessPID;

    bool hasStarted = false;
    bool alertsCleared = false; ///< before the stored ones had come
    Date lastTotalsRefresh;
    boost::signals2::signal<void(const ModelChanges&)> changed;
};

AppModel::AppModel(AppParts parts, AppModelOptions options)
    : self(std::make_shared<State>(std::move(parts), std::move(options))) {}

AppModel::~AppModel() = default;

void AppModel::start() {
    self->start();
}

const AppState& AppModel::state() const {
    return self->shown;
}

const Navigation& AppModel::navigation() const {
    return self->pages;
}

AppSettings& AppModel::settings() {
    return *self->settings;
}

SamplingEngine& AppModel::engine() {
    return *self->engine;
}

HistoryStore& AppModel::history() {
    return *self->history;
}

const AlertEngine& AppModel::alertEngine() const {
    return self->alertEngine;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): handed over, whatever the signal makes of it
Subscription AppModel::observe(std::function<void(const ModelChanges&)> observer) {
    return self->changed.connect(observer);
}

void AppModel::dropObservers() {
    self->changed.disconnect_all_slots();
}

void AppModel::apply(const SharedSnapshot& snapshot) {
    self->apply(snapshot);
}

void AppModel::setDuties(Duties duties) {
    self->setDuties(duties);
}

void AppModel::applySettings() {
    self->applySettings();
}

void AppModel::setPopoverVisible(bool visible) {
    self->demand.setPopoverVisible(visible);
    self->tellDemand();
}

void AppModel::setWindowVisible(bool visible) {
    self->demand.setWindowVisible(visible);
    self->tellDemand();
}

void AppModel::registerPage(const std::string& name) {
    self->demand.registerPage(name);
    self->tellDemand();
}

void AppModel::unregisterPage(const std::string& name) {
    self->demand.unregisterPage(name);
    self->tellDemand();
}

const SamplingDemand& AppModel::demand() const {
    return self->demand.demand();
}

void AppModel::select(Page page) {
    self->turn([&] { self->pages.select(page); });
}

void AppModel::goBack() {
    self->turn([&] { self->pages.goBack(); });
}

void AppModel::goForward() {
    self->turn([&] { self->pages.goForward(); });
}

bool AppModel::isSidebarVisible() const {
    return self->isSidebarVisible;
}

void AppModel::setSidebarVisible(bool visible) {
    self->settings->defaults().setBoolean(sidebarKey, visible);
    if (assign(self->isSidebarVisible, visible))
        self->publish({.navigation = true});
}

bool AppModel::showsWelcome() const {
    return self->showsWelcome;
}

void AppModel::setShowsWelcome(bool shows) {
    if (assign(self->showsWelcome, shows))
        self->publish({.navigation = true});
}

const std::optional<std::string>& AppModel::selectedAppKey() const {
    return self->selectedAppKey;
}

void AppModel::selectApp(std::optional<std::string> key) {
    if (assign(self->selectedAppKey, std::move(key)))
        self->publish({.navigation = true});
}

const std::optional<std::int32_t>& AppModel::selectedProcessPID() const {
    return self->selectedProcessPID;
}

void AppModel::selectProcess(std::optional<std::int32_t> pid) {
    if (assign(self->selectedProcessPID, pid))
        self->publish({.navigation = true});
}

void AppModel::startSession(std::string name) {
    self->startSession(std::move(name));
}

void AppModel::stopSession() {
    self->stopSession();
}

void AppModel::clearAlerts() {
    self->clearAlerts();
}

void AppModel::refreshTotals() {
    self->refreshTotals();
}

} // namespace ostrivane
