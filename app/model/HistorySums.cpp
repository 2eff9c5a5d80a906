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

void askHistorySums(HistoryStore& history, const std::function<Date()>& now, std::function<void(HistorySums)> answer) {
    auto sums = std::make_shared<HistorySums>(); // filled on the store's strand alone
    history.totals(Calendar::startOfDay(now()), [sums](const Totals& totals) { sums->today = totals; });
    history.totals(now() + -week, [sums](const Totals& totals) { sums->week = totals; });
    history.totals(now() + -month, [sums](const Totals& totals) { sums->month = totals; });
    history.systemRows(Calendar::startOfDay(now()), now(),
                       [sums](const std::vector<SystemRow>& rows) { averageToday(*sums, rows); });
    history.systemRows(now() + -week, now(), [sums, answer = std::move(answer)](const std::vector<SystemRow>& rows) {
        sums->typicalDrainPerHour = BatteryDrain::typical(rows);
        answer(*sums);
    });
}

} // namespace ostrivane
