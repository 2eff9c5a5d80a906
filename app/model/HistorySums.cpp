#include "app/model/HistorySums.hpp"

#include "app/model/BatteryDrain.hpp"
#include "core/history/HistoryStore.hpp"
#include "core/model/Calendar.hpp"

#include <algorithm>
#include <memory>
#include <utility>

namespace ostrivane {

namespace {

constexpr double week = 604800;
constexpr double month = 2592000;

void averageToday(HistorySums& sums, const std::vector<SystemRow>& rows) {
    double cpu = 0;
    double gpu = 0;
    double gpuPeak = 0;
    double gpuRows = 0;
    for (const SystemRow& row : rows) {
        cpu += row.cpu;
        if (!row.gpu)
            continue;
        gpu += *row.gpu;
        gpuPeak = std::max(gpuPeak, *row.gpu);
        ++gpuRows;
    }
    if (!rows.empty())
        sums.cpuAverageToday = cpu / static_cast<double>(rows.size());
    if (gpuRows > 0)
        sums.gpuStatsToday = GPUStats{.avg = gpu / gpuRows, .peak = gpuPeak};
}

} // namespace

void askHistorySums(HistoryStore& history, const std::function<Date()>& now,
                    std::function<void(std::optional<HistorySums>)> answer) {
    struct Asking {
        HistorySums sums;
        bool isWhole = true;
    };
    auto asking = std::make_shared<Asking>(); // filled on the store's strand alone
    // A failed read has an empty answer, and the next good one makes it forgotten.
    const auto check = [&] {
        history.readProblem([asking](const std::optional<std::string>& problem) { asking->isWhole &= !problem; });
    };
    const auto total = [&](Date since, Totals HistorySums::*which) {
        history.totals(since, [asking, which](const Totals& totals) { asking->sums.*which = totals; });
        check();
    };
    total(Calendar::startOfDay(now()), &HistorySums::today);
    total(now() + -week, &HistorySums::week);
    total(now() + -month, &HistorySums::month);
    history.systemRows(Calendar::startOfDay(now()), now(),
                       [asking](const std::vector<SystemRow>& rows) { averageToday(asking->sums, rows); });
    check();
    history.systemRows(now() + -week, now(), [asking](const std::vector<SystemRow>& rows) {
        asking->sums.typicalDrainPerHour = BatteryDrain::typical(rows);
    });
    history.readProblem([asking, answer = std::move(answer)](const std::optional<std::string>& problem) {
        answer(asking->isWhole && !problem ? std::optional(asking->sums) : std::nullopt);
    });
}

} // namespace ostrivane
