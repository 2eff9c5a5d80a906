#include "app/model/AppModel.hpp"
#include "core/sampling/platform/NativeMachine.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/app/model/MemoryKeyValueStore.hpp"
#include "tests/sampling/EngineHarness.hpp"

#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <gtest/gtest.h>

#include <utility>

namespace ostrivane {
namespace {

namespace asio = boost::asio;

/// Engine, store and model each on a thread of their own, over clocks that run: what the thread sanitizer is for.
TEST(AppModelThreads, engineStoreAndModelWorkSideBySide) {
    const TemporaryFolder folder;
    asio::io_context context{1};
    asio::thread_pool sampling{1};
    asio::thread_pool storing{1};
    AppParts parts;
    parts.settings = std::make_unique<AppSettings>(std::make_unique<MemoryKeyValueStore>());
    parts.engine = std::make_unique<SamplingEngine>(sampling.get_executor(), std::make_unique<NotingCollectors>(),
                                                    nativeClock(sampling.get_executor()));
    parts.history = std::make_unique<HistoryStore>(storing.get_executor(), folder.file("history.sqlite"));
    parts.onMainThread = [&](std::function<void()> work) { asio::post(context, std::move(work)); };
    std::optional<AppModel> model;
    model.emplace(std::move(parts), AppModelOptions{.interval = 0.001});
    const auto work = asio::make_work_guard(context);
    double lastTime = 0;
    int ticks = 0;
    const Subscription watching = model->observe([&](const ModelChanges& changes) {
        if (!changes.snapshot)
            return;
        EXPECT_GT(model->state().snapshot->timestamp.seconds, lastTime);
        lastTime = model->state().snapshot->timestamp.seconds;
        ++ticks;
        if (ticks == 5)
            model->startSession("five");
        if (ticks % 7 == 0)
            model->setWindowVisible(ticks % 2 == 0);
        if (ticks == 20)
            model->stopSession();
        if (ticks == 30)
            model->refreshTotals();
        if (ticks == 60)
            context.stop();
    });
    model->start();
    context.run();
    ASSERT_TRUE(model->state().lastSessionSummary);
    EXPECT_EQ(model->state().lastSessionSummary->samples, 15);
    model.reset(); // in the middle of what engine and store are about
    storing.join();
    sampling.join();
}

} // namespace
} // namespace ostrivane
