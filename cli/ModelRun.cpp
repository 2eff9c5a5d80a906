#include "cli/ModelRun.hpp"

#include "app/model/LeavableThread.hpp"
#include "core/sampling/platform/UserFolders.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <fmt/format.h>

#include <utility>

namespace ostrivane::cli {

namespace {

namespace asio = boost::asio;

constexpr const char* nowhere = "/dev/null/" /* no folder */; // nothing can be opened or made there

/// Where the user's history lies; `nowhere` when there is no such place, and for a recording.
std::string historyFileFor(const Source& source, HistoryAccess access) {
    const auto folder = source.replay.empty() ? UserFolders::dataDirectory() : std::nullopt;
    if (folder && access == HistoryAccess::readWrite)
        UserFolders::makeDirectory(*folder); // that it could not is told by the store
    return fmt::format("{}/{}", folder.value_or(nowhere), UserFolders::historyFile);
}

} // namespace

struct ModelRun::Parts {
    Parts(const Source& source, ModelRunOptions options)
        : sampling(options.engineHasThread ? std::make_unique<LeavableThread>(tickGrace) : nullptr),
          session(engineExecutor(), source, [home = context, ended = std::move(options.ended)] {
              if (ended)
                  asio::post(*home, ended);
          }) {
        if (session.problem())
            return;
        AppParts made;
        made.settings = std::make_unique<AppSettings>(nativeKeyValueStore());
        made.engine = session.takeEngine();
        made.history = std::make_unique<HistoryStore>(storing.executor(), historyFileFor(source, options.history),
                                                      HistoryOptions{options.history, {}});
        // Shared with the thread of the history, which may be left behind.
        made.onMainThread = [home = context](std::function<void()> work) { asio::post(*home, std::move(work)); };
        model.emplace(std::move(made), AppModelOptions{.words = session.words(),
                                                       .duties = {.keepsHistory = false, .notifies = false},
                                                       .interval = source.interval});
    }

    ~Parts() {
        if (sampling)
            sampling->leave(); // its tick may hold a turn, and hands what it read to this thread
    }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    asio::any_io_executor engineExecutor() {
        return sampling ? asio::any_io_executor(sampling->executor()) : asio::any_io_executor(context->get_executor());
    }

    // The executors outlive who works on them.
    const std::shared_ptr<asio::io_context> context = std::make_shared<asio::io_context>(1);
    asio::executor_work_guard<asio::io_context::executor_type> guard{context->get_executor()};
    std::unique_ptr<LeavableThread> sampling;
    LeavableThread storing;
    Session session;
    std::optional<AppModel> model;
};

ModelRun::ModelRun(const Source& source, ModelRunOptions options)
    : parts(std::make_unique<Parts>(source, std::move(options))) {}

ModelRun::~ModelRun() = default;

std::optional<std::string> ModelRun::problem() const {
    return parts->session.problem();
}

const Session& ModelRun::session() const {
    return parts->session;
}

AppModel& ModelRun::model() {
    return *parts->model;
}

void ModelRun::demandEverything() {
    for (const std::string_view page : readingPages)
        model().registerPage(std::string(page));
    model().setWindowVisible(true);
}

void ModelRun::afterHistory(std::function<void()> done) {
    // It answers in the order in which it is asked.
    model().history().isAvailable([home = parts->context, done = std::move(done)](bool) { asio::post(*home, done); });
}

void ModelRun::run() {
    parts->context->run();
}

void ModelRun::stop() {
    parts->context->stop();
}

boost::asio::io_context& ModelRun::context() {
    return *parts->context;
}

boost::asio::any_io_executor ModelRun::engineExecutor() {
    return parts->engineExecutor();
}

} // namespace ostrivane::cli
