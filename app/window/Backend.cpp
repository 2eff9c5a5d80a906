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

constexpr std::chrono::seconds lossPatience{5}; // before a lost history is begun once more
constexpr const char* nowhere = "/dev/null/" /* no folder */;

/// Whether this program may write the history of `folder`.
struct HistoryPlaceOfOurs {
    std::string folder;
    std::optional<HistoryLock> lock;
    bool isKeptByOther = false;
    std::optional<std::string> problem{};

    void claim() {
        lock.reset();
        auto taken = claimHistory(folder, "ostrivane");
        isKeptByOther = std::holds_alternative<HistoryLock::Holder>(taken);
        if (auto* ours = std::get_if<HistoryLock>(&taken))
            lock.emplace(std::move(*ours));
        const auto* why = std::get_if<HistoryLock::Problem>(&taken);
        problem = why ? std::optional(*why) : std::nullopt;
    }
};

} // namespace

struct Backend::Parts {
    Parts(std::function<void(std::function<void()>)> poster, BackendOptions chosen)
        : onMainThread(std::move(poster)), isReplay(!chosen.source.replay.empty()),
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
        const bool keeps = place.lock.has_value();
        AppParts made;
        made.settings = std::make_unique<AppSettings>(nativeKeyValueStore());
        made.engine = engine.takeEngine();
        made.history = std::make_unique<HistoryStore>(
            storing.executor(), fmt::format("{}/{}", place.folder, UserFolders::historyFile),
            HistoryOptions{keeps ? HistoryAccess::readWrite : HistoryAccess::readOnly, clock()});
        if (keeps && !isReplay)
            made.notifier = nativeNotifier();
        if (!isReplay)
            made.workspace = nativeWorkspace();
        made.onMainThread = onMainThread;
        model.emplace(std::move(made),
                      AppModelOptions{.words = engine.words(), .keepsHistory = keeps, .interval = {}, .now = clock()});
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
        if (isAsking)
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
                if (isLost && place.lock && SteadyClock::now() - opened >= lossPatience)
                    beginAnew();
            });
        });
    }

    void beginAnew() {
        opened = SteadyClock::now();
        place.claim();
        if (place.lock)
            model->history().reopen();
    }

    void tell(const std::optional<std::string>& problem) {
        if (problem == told || isReplay)
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
    SteadyClock::time_point opened = SteadyClock::now(); ///< the history's file
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
    auto done = std::make_shared<std::promise<void>>();
    auto future = done->get_future();
    parts->model->history().flush([done] { done->set_value(); });
    return future.wait_for(patience) == std::future_status::ready;
}

} // namespace ostrivane
