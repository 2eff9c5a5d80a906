// What the whole window costs the main thread with each reading, and whether it grows while it is used for long.

#include "app/pages/PageContext.hpp"
#include "app/window/LoginItem.hpp"
#include "app/window/MainMenu.hpp"
#include "app/window/MainWindow.hpp"
#include "bench/DesktopModel.hpp"
#include "core/model/Page.hpp"
#include "core/model/RawValue.hpp"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QEvent>

#include <ctime>
#include <malloc.h>

namespace ostrivane {
namespace {

double threadSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// The window as the program shows it, at 1240 × 800, over a desktop at work.
class OpenWindow {
public:
    OpenWindow() {
        window.resize(1240, 800);
        window.show();
        window.setSeen(true);
        (*alone).setWindowVisible(true);
        settle();
    }

    void select(Page page) {
        (*alone).select(page);
        settle();
    }
    void tick() {
        alone.apply(desktop.next());
        settle();
    }

private:
    /// What was put off, layout and painting, is done.
    void settle() {
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // as an event loop does
        QEvent request(QEvent::UpdateRequest);
        QApplication::sendEvent(&window, &request);
    }

    ModelAlone alone;
    Desktop desktop{2};
    std::unique_ptr<LoginItem> loginItem = nativeLoginItem();
    PageContext context{.model = *alone,
                        .words = PlatformWords::Linux,
                        .loginItem = *loginItem,
                        .onMainThread = alone.onMainThread(),
                        .now = [this] { return alone.time(); },
                        .wayBack = [] { return WayBack::furtherStart; },
                        .reveal = {}};
    MainWindow window{context, MenuActions{}, [] { return true; }};
};

/// 300 processes of 150 applications on 16 cores; painting included.
void tick(benchmark::State& state, Page page) {
    OpenWindow open;
    open.select(page);
    for (int warmUp = 0; warmUp < 100; ++warmUp)
        open.tick();
    for (auto _ : state) {
        const double begin = threadSeconds();
        open.tick();
        state.SetIterationTime(threadSeconds() - begin);
    }
}
BENCHMARK_CAPTURE(tick, overview, Page::overview)->Iterations(300)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(tick, cpu, Page::cpu)->Iterations(300)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(tick, processes, Page::processes)->Iterations(300)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(tick, applications, Page::applications)
    ->Iterations(300)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// 10,000 ticks, with every page visited in turn, 20 ticks each: bytes allocated once the live series are as long as
/// they get, and how many more at the end.
void tenThousandTicks(benchmark::State& state) {
    double first = 0;
    double last = 0;
    for (auto _ : state) {
        OpenWindow open;
        int ticks = 0;
        while (ticks < 10'000)
            for (const auto& [page, name] : rawTexts(EnumTag<Page>())) {
                open.select(page);
                for (int each = 0; each < 20; ++each, ++ticks)
                    open.tick();
                if (first == 0 && ticks >= 4000 && page == Page::overview)
                    first = static_cast<double>(::mallinfo2().uordblks);
                if (page == Page::overview)
                    last = static_cast<double>(::mallinfo2().uordblks);
            }
    }
    state.counters["bytesAt4000"] = first;
    state.counters["grownBy10000"] = last - first;
}
BENCHMARK(tenThousandTicks)->Unit(benchmark::kSecond)->Iterations(1);

} // namespace
} // namespace ostrivane
