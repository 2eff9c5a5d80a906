// How long the table of processes keeps the main thread busy: with each reading, its repaint included, and while the
// user filters, sorts and scrolls.

#include "app/pages/ProcessTable.hpp"
#include "app/widgets/RowsModel.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableView.hpp"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPaintEvent>
#include <QScrollBar>

#include <algorithm>
#include <ctime>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace ostrivane {
namespace {

double threadMilliseconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// A machine whose processes come, go and change.
class Crowd {
public:
    explicit Crowd(std::size_t size) {
        for (std::size_t app = 0; app < 60; ++app) {
            ApplicationSnapshot listed;
            listed.key = "/usr/share/applications/app" + std::to_string(app) + ".desktop";
            listed.name = "Application " + std::to_string(app);
            apps.push_back(std::move(listed));
        }
        while (processes.size() < size)
            processes.push_back(born());
    }

    /// Two percent end and as many start; the figures of a tenth change.
    SharedSnapshot next() {
        const auto chance = [this](unsigned permille) { return random() % 1000 < permille; };
        for (ProcessSnapshot& process : processes)
            if (chance(20))
                process = born();
            else if (chance(100))
                use(process);
        auto snapshot = std::make_shared<SystemSnapshot>();
        snapshot->interval = 2;
        snapshot->processes = processes;
        snapshot->applications = apps;
        return snapshot;
    }

private:
    ProcessSnapshot born() {
        ProcessSnapshot process;
        process.pid = ++lastPID;
        const auto kind = random() % 50;
        process.name = (kind % 5 == 0 ? "Web Content Helper " : "worker-process-") + std::to_string(kind);
        process.user = kind % 3 == 0 ? "root" : "ada";
        process.uid = kind % 3 == 0 ? 0 : 1000;
        if (process.uid != 0)
            process.commandLine = "/usr/lib/" + process.name;
        process.appKey = apps[random() % apps.size()].key;
        use(process);
        return process;
    }
    void use(ProcessSnapshot& process) {
        process.cpu = random() % 4 == 0 ? static_cast<double>(random() % 4000) / 1000 : 0;
        process.memory = random() % (std::uint64_t{1} << 31);
    }

    std::mt19937 random{11};
    std::int32_t lastPID = 0;
    std::vector<ApplicationSnapshot> apps;
    std::vector<ProcessSnapshot> processes;
};

/// Counts the paintings of a widget.
class PaintCount final : public QObject {
public:
    explicit PaintCount(QWidget* watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

/// The table as the page shows it in a window of 1240 × 800.
struct Shown {
    Shown() {
        table = std::make_unique<TableView>("processes", QStringLiteral("Processes"), nullptr);
        model.sort(2, Qt::DescendingOrder);
        table->setRows(&model);
        table->resize(982, 560);
        table->show();
        paints = std::make_unique<PaintCount>(table->viewport());
    }
    void take(const SharedSnapshot& snapshot) {
        std::vector<ProcessRow> rows = processRows(*snapshot);
        heat = ProcessHeat::of(rows);
        model.assign(std::move(rows), snapshot);
    }
    /// What was put off, layout and painting, is done.
    void settle() {
        QApplication::processEvents();
        QEvent request(QEvent::UpdateRequest);
        QApplication::sendEvent(table.get(), &request);
    }

    ProcessHeat heat;
    RowsModel<ProcessRow, std::int32_t> model{processColumns(heat),
                                              [](const ProcessRow& row) { return row.process->pid; }};
    std::unique_ptr<TableView> table;
    std::unique_ptr<PaintCount> paints;
};

/// Runs `prepare`, then `work` with its repaint, and reports how long the latter takes.
template <class Prepare, class Work>
void measure(benchmark::State& state, Shown& shown, Prepare prepare, Work work) {
    std::vector<double> taken;
    for (auto _ : state) {
        prepare();
        const int before = shown.paints->count;
        const double begin = threadMilliseconds();
        work();
        shown.settle();
        taken.push_back(threadMilliseconds() - begin);
        state.SetIterationTime(taken.back() / 1e3);
        if (shown.paints->count == before)
            return state.SkipWithError("nothing was painted");
    }
    std::ranges::sort(taken);
    state.counters["medianMillis"] = taken[taken.size() / 2];
    state.counters["p99Millis"] = taken[taken.size() * 99 / 100];
}

void tick(benchmark::State& state) {
    Crowd crowd(static_cast<std::size_t>(state.range(0)));
    Shown shown;
    SharedSnapshot snapshot;
    for (int warmUp = 0; warmUp < 5; ++warmUp) {
        shown.take(crowd.next());
        shown.settle();
    }
    shown.model.setOrderHeld(state.range(1) != 0);
    measure(
        state, shown, [&] { snapshot = crowd.next(); }, [&] { shown.take(snapshot); });
}
BENCHMARK(tick)
    ->ArgNames({"processes", "held"})
    ->ArgsProduct({{300, 3000}, {0, 1}})
    ->Iterations(300)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// By name: every text is compared.
void sortByName(benchmark::State& state) {
    Crowd crowd(static_cast<std::size_t>(state.range(0)));
    Shown shown;
    shown.take(crowd.next());
    shown.settle();
    bool byName = false;
    measure(
        state, shown, [] {},
        [&] {
            byName = !byName;
            shown.model.sort(byName ? 0 : 2, Qt::DescendingOrder);
        });
}
BENCHMARK(sortByName)->ArgName("processes")->Arg(3000)->Iterations(100)->UseManualTime()->Unit(benchmark::kMillisecond);

void typeIntoFilter(benchmark::State& state) {
    Crowd crowd(static_cast<std::size_t>(state.range(0)));
    Shown shown;
    shown.take(crowd.next());
    shown.settle();
    bool wantsWorkers = false;
    measure(
        state, shown, [] {},
        [&] {
            wantsWorkers = !wantsWorkers;
            const QString wanted = wantsWorkers ? QStringLiteral("worker-process") : QStringLiteral("helper");
            shown.model.setFilter([wanted](const ProcessRow& row) { return isListed(row, ProcessScope::all, wanted); });
        });
}
BENCHMARK(typeIntoFilter)
    ->ArgName("processes")
    ->Arg(3000)
    ->Iterations(100)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void scroll(benchmark::State& state) {
    Crowd crowd(static_cast<std::size_t>(state.range(0)));
    Shown shown;
    shown.take(crowd.next());
    shown.settle();
    QScrollBar& bar = *shown.table->verticalScrollBar();
    measure(
        state, shown, [] {}, [&] { bar.setValue((bar.value() + 84) % bar.maximum()); });
}
BENCHMARK(scroll)->ArgName("processes")->Arg(3000)->Iterations(300)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace ostrivane
