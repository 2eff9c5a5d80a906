#include "app/pages/AppShareTables.hpp"

#include "app/pages/ApplicationsText.hpp"
#include "app/pages/CountText.hpp"
#include "app/pages/GPUText.hpp"
#include "app/pages/MemoryText.hpp"
#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <algorithm>
#include <string_view>

namespace ostrivane {

namespace {

/// Bytes, absent where the system hides them: 0 would be a guess.
template <class Row>
std::optional<double> memory(const Row& row) {
    return row.isHidden ? std::nullopt : std::optional(static_cast<double>(row.app->memory));
}

template <class Row>
QString memoryText(const Row& row) {
    const std::optional<double> bytes = memory(row);
    return text(bytes ? Formatters::bytes(*bytes) : std::string(Formatters::dash));
}

std::optional<double> share(const MemoryAppRow& row) {
    const std::optional<double> bytes = memory(row);
    return bytes && row.total > 0 ? std::optional(*bytes / row.total) : std::nullopt;
}

double partOf(std::optional<double> value, double largest) {
    return value && largest > 0 ? std::clamp(*value / largest, 0.0, 1.0) : 0;
}

SortKey keyOf(std::optional<double> value) {
    return value ? SortKey(*value) : SortKey();
}

template <class Row>
TableColumn<Row> applicationColumn() {
    return {.id = "application",
            .title = QStringLiteral("Application"),
            .isHideable = false,
            .text = [](const Row& row) { return text(row.app->name); },
            .sortKey = [](const Row& row) { return SortKey(std::string_view(row.app->name)); },
            .icon = [](const Row& row, int pixels, qreal ratio) { return AppIcons::pixmap(*row.app, pixels, ratio); }};
}

} // namespace

std::vector<MemoryAppRow>
memoryAppRows(const SystemSnapshot& snapshot,
              const std::function<std::optional<double>(const ApplicationSnapshot&)>& change) {
    double largest = 0;
    for (const ApplicationSnapshot& app : snapshot.applications)
        largest = std::max(largest, static_cast<double>(app.memory));
    std::vector<MemoryAppRow> rows;
    rows.reserve(snapshot.applications.size());
    const auto total = static_cast<double>(snapshot.memory.total);
    for (const ApplicationRow& row : applicationRows(snapshot, {}, true))
        rows.push_back({row.app, row.hidden.use, largest, total, row.hidden.use ? std::nullopt : change(*row.app)});
    return rows;
}

std::vector<TableColumn<MemoryAppRow>> memoryAppColumns() {
    using Row = MemoryAppRow;
    return {applicationColumn<Row>(),
            {.id = "memory",
             .title = QStringLiteral("Memory"),
             .isNumeric = true,
             .width = 150,
             .isHideable = false,
             .text = [](const Row& row) { return memoryText(row); },
             .sortKey = [](const Row& row) { return keyOf(memory(row)); },
             .sortsDescendingFirst = true,
             .bar = [](const Row& row) { return partOf(memory(row), row.largest); },
             .barSeries = Series::s4},
            {.id = "share",
             .title = QStringLiteral("Share of RAM"),
             .isNumeric = true,
             .width = 120,
             .text = [](const Row& row) { return text(Formatters::percent(share(row))); },
             .sortKey = [](const Row& row) { return keyOf(share(row)); },
             .sortsDescendingFirst = true},
            {.id = "change",
             .title = QStringLiteral("Last hour"),
             .isNumeric = true,
             .width = 120,
             .text = [](const Row& row) { return changeText(row.change); },
             .sortKey = [](const Row& row) { return keyOf(row.change); },
             .sortsDescendingFirst = true,
             .tone = [](const Row& row) { return isStrongGrowth(row.change) ? Tone::elevated : Tone::text2; },
             .isBold = [](const Row& row) { return isStrongGrowth(row.change); }},
            {.id = "processes",
             .title = QStringLiteral("Processes"),
             .isNumeric = true,
             .width = 110,
             .text = [](const Row& row) { return countText(row.app->processCount()); },
             .sortKey = [](const Row& row) { return SortKey(static_cast<double>(row.app->processCount())); },
             .sortsDescendingFirst = true}};
}

std::vector<GPUAppRow> gpuAppRows(const SystemSnapshot& snapshot) {
    double largest = 0;
    for (const ApplicationSnapshot& app : snapshot.applications)
        largest = std::max(largest, app.gpu.value_or(0));
    std::vector<GPUAppRow> rows;
    for (const ApplicationRow& row : applicationRows(snapshot, {}, true))
        if (row.app->gpu)
            rows.push_back({row.app, row.hidden.use, largest});
    return rows;
}

std::vector<TableColumn<GPUAppRow>> gpuAppColumns() {
    using Row = GPUAppRow;
    return {applicationColumn<Row>(),
            {.id = "gpu",
             .title = QStringLiteral("GPU"),
             .isNumeric = true,
             .width = 150,
             .isHideable = false,
             .text = [](const Row& row) { return gpuShareText(row.app->gpu); },
             .sortKey = [](const Row& row) { return keyOf(row.app->gpu); },
             .sortsDescendingFirst = true,
             .bar = [](const Row& row) { return partOf(row.app->gpu, row.largest); },
             .barSeries = Series::s3},
            {.id = "memory",
             .title = QStringLiteral("Memory"),
             .isNumeric = true,
             .width = 150,
             .text = [](const Row& row) { return memoryText(row); },
             .sortKey = [](const Row& row) { return keyOf(memory(row)); },
             .sortsDescendingFirst = true}};
}

} // namespace ostrivane
