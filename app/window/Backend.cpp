#include "app/window/Backend.hpp"

#include "app/model/HistoryClaim.hpp"
#include "app/model/LeavableThread.hpp"
#include "core/model/Calendar.hpp"
#include "core/sampling/platform/UserFolders.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/signal_set.hpp>
#include <fmt/format.h>

#include <atomic>
#include <csignal>
#include <future>
#include <utility>

namespace ostrivane {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr const char* nowhere = "/dev/null/" /* no folder */;

/// Whether this program keeps the history of `folder`, or who else does.
struct HistoryPlaceOfOurs {
    std::string folder;
    std::optional<HistoryLock> lock{};
    std::optional<HistoryLock::Holder> other{};
    std::optional<std::string> problem{}; ///< in the way of asking

    void claim() {
        lock.reset();
        problem.reset();
        other = HistoryLock::holder(folder);
        if (other) // known at once: to ask for what it has takes a while
            return;
        auto taken = claimHistory(folder, "ostrivane");
        if (auto* ours = std::get_if<HistoryLock>(&taken))
            lock.emplace(std::move(*ours));
        else if (const auto* holder = std::get_if<HistoryLock::Holder>(&taken))
            other = *holder;
        else
            problem = std::get<HistoryLock::Problem>(taken);
    }

    /// Who keeps it tells of alerts. Where it cannot be kept at all they are told of none the less.
    Duties duties() const { return {.keepsHistory = lock.has_value(), .notifies = !other}; }
};

} // namespace

struct Backend::Parts {
    Parts(std::function<void(std::function<void()>)> poster, BackendOptions chosen)
        : onMainThread(std::move(poster)), isReplay(!chosen.source.replay.empty()), lossPatience(chosen.lossPatience),
          engine(sampling.executor(), chosen.source, [post = onMainThread, ended = std::move(chosen.ended)] {
              if (ended)
                  post(ended);
          }) {
        if (engine.problem())
            return;
        place.folder = isReplay ? chosen.historyFolder : UserFolders::dataDirectory().value_or("");
        if (place.folder.empty())
            place.folder = nowhere;
        else
            place.claim();
        AppParts made;
        made.settings = std::make_unique<AppSettings>(nativeKeyValueStore());
        made.engine = engine.takeEngine();
        made.history = std::make_unique<HistoryStore>(
            storing.executor(), fmt::format("{}/{}", place.folder, UserFolders::historyFile),
            HistoryOptions{place.problem ? HistoryAccess::readOnly : HistoryAccess::readWrite, clock()});
        if (!isReplay) {
            made.notifier = nativeNotifier();
            made.workspace = nativeWorkspace();
        }
        made.onMainThread = onMainThread;
        model.emplace(
            std::move(made),
            AppModelOptions{.words = engine.words(), .duties = place.duties(), .interval = {}, .now = clock()});
        if (isReplay)
            following = model->observe([this](const ModelChanges& changes) {
                if (changes.snapshot)
                    replayed->store(model->state().snapshot->timestamp.seconds);
            });
    }

    ~Parts() {
        sampling.leave(); // its tick may hold a turn, and hands what it read to this thread
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    std::function<Date()> clock() const {
        if (!isReplay)
            return Calendar::now;
        return [time = replayed] { return Date{time->load()}; };
    }

    /// Asks the store how it does, at each snapshot; one question at a time, as a stuck store answers none.
    void look() {
        if (isAsking || isReplay)
            return;
        isAsking = true;
        model->history().problem([post = onMainThread, weak = std::weak_ptr(alive), this](auto problem) {
            post([weak, this, problem = std::move(problem)] {
                if (weak.lock())
                    tell(place.problem ? place.problem : problem);
            });
        });
        model->history().isLost([post = onMainThread, weak = std::weak_ptr(alive), this](bool isLost) {
            post([weak, this, isLost] {
                if (!weak.lock())
                    return;
                isAsking = false;
                if (SteadyClock::now() - claimed >= lossPatience)
                    claimAnew(isLost);
            });
        });
    }

    /// Begins a lost history once more, and takes it over from a program that kept it and has ended.
    void claimAnew(bool isLost) {
        if (place.lock && !isLost)
            return;
        claimed = SteadyClock::now();
        const bool couldWrite = !place.problem;
        place.claim();
        if (!place.problem && (isLost || !couldWrite))
            model->history().reopen();
        model->setDuties(place.duties());
    }

    void tell(const std::optional<std::string>& problem) {
        if (problem == told)
            return;
        told = problem;
        if (place.lock)
            place.lock->note(problem.value_or(""));
        if (observer)
            observer(told);
    }

    // The executors outlive who works on them.
    const std::function<void(std::function<void()>)> onMainThread;
    const bool isReplay;
    const std::chrono::milliseconds lossPatience;
    const std::shared_ptr<std::atomic<double>> replayed = std::make_shared<std::atomic<double>>(0);
    const std::shared_ptr<int> alive = std::make_shared<int>();
    LeavableThread sampling{tickGrace};
    LeavableThread storing;
    LeavableThread listening; ///< to signals: a reading that hangs must not keep the program from ending
    boost::asio::signal_set signals{listening.executor()};
    SourceEngine engine;
    HistoryPlaceOfOurs place;
    std::optional<AppModel> model;
    Subscription following;
    Subscription looking;
    SteadyClock::time_point claimed = SteadyClock::now(); ///< the history
    std::optional<std::string> told;
    std::function<void(std::optional<std::string>)> observer;
    bool isAsking = false;
};

Backend::Backend(std::function<void(std::function<void()>)> onMainThread, BackendOptions options)
    : parts(std::make_unique<Parts>(std::move(onMainThread), std::move(options))) {}

Backend::~Backend() = default;

std::optional<std::string> Backend::problem() const {
    return parts->engine.problem();
}

AppModel& Backend::model() {
    return *parts->model;
}

const PlatformWords& Backend::words() const {
    return parts->engine.words();
}

std::function<Date()> Backend::clock() const {
    return parts->clock();
}

void Backend::onHistoryProblem(std::function<void(std::optional<std::string>)> told) {
    parts->observer = std::move(told);
    parts->looking = parts->model->observe([held = parts.get()](const ModelChanges& changes) {
        if (changes.snapshot)
            held->look();
    });
    parts->look();
}

std::optional<std::string> Backend::otherKeeper() const {
    return parts->place.other ? std::optional(refusal(*parts->place.other)) : std::nullopt;
}

void Backend::onQuitSignal(std::function<void()> quit) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        parts->signals.add(signal);
    parts->signals.async_wait(
        [post = parts->onMainThread, quit = std::move(quit)](const boost::system::error_code& error, int) {
            if (!error)
                post(quit);
        });
}

bool Backend::finish(std::chrono::milliseconds patience) {
    parts->model->engine().stop();
    const auto deadline = SteadyClock::now() + patience;
    for (int round = 0; round < 2; ++round) { // an answer may order one more thing to be written
        auto done = std::make_shared<std::promise<void>>();
        auto future = done->get_future();
        parts->model->history().flush([done] { done->set_value(); });
        if (future.wait_until(deadline) != std::future_status::ready)
            return false;
    }
    return true;
}

} // namespace ostrivane
