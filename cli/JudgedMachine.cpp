#include "cli/JudgedMachine.hpp"

#include "cli/ModelRun.hpp"
#include "cli/Output.hpp"

namespace ostrivane::cli {

namespace {

constexpr double patience = 4; // seconds, for figures that come late or never: slow samplers, and a stuck disk

/// Whether there are rates, and the figures that processes of others take a second answer for.
bool isWhole(const SystemSnapshot& snapshot) {
    return snapshot.interval > 0 && snapshot.systemProcessMetricsIncluded;
}

} // namespace

std::optional<AppState> judgedMachine(const Source& source, ExitStatus& status) {
    status = failed;
    ModelRun* running = nullptr;
    ModelRun run(source, {.ended = [&running] { running->stop(); }});
    running = &run;
    if (const auto problem = run.problem()) {
        writeError(*problem);
        return std::nullopt;
    }
    AppModel& model = run.model();
    bool hasHistory = false;
    std::optional<double> first;
    const Subscription watching = model.observe([&](const ModelChanges& changes) {
        if (!changes.snapshot)
            return;
        if (run.problem()) // no verdict is made of damaged answers
            return run.stop();
        const SystemSnapshot& snapshot = *model.state().snapshot;
        const double waited = snapshot.timestamp.seconds - first.value_or(snapshot.timestamp.seconds);
        first = snapshot.timestamp.seconds - waited;
        const bool isLate = snapshot.interval > 0 && waited >= patience;
        if (source.replay.empty() && ((isWhole(snapshot) && hasHistory) || isLate))
            run.stop();
    });
    run.demandEverything();
    model.start();
    run.afterHistory([&] { hasHistory = true; });
    run.run();
    if (const auto problem = run.problem()) {
        writeError(*problem);
        return std::nullopt;
    }
    if (const auto remark = run.session().remark())
        writeError(*remark);
    status = succeeded;
    return model.state();
}

} // namespace ostrivane::cli
