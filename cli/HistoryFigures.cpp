#include "cli/HistoryFigures.hpp"

#include "core/history/RowRate.hpp"
#include "core/model/Formatters.hpp"

#include <optional>
#include <utility>

namespace ostrivane::cli {

namespace {

using Value = std::optional<double>;

std::string share(double fraction) {
    return Formatters::percent(fraction);
}
std::string percentage(double percent) {
    return Formatters::percent(percent / 100);
}
std::string memory(double bytes) {
    return Formatters::bytes(bytes);
}
std::string diskRate(double rate) {
    return Formatters::diskRate(rate);
}
std::string netRate(double rate) {
    return Formatters::rate(rate);
}
std::string power(double watts) {
    return Formatters::power(watts);
}
std::string temperature(double celsius) {
    return Formatters::temperature(celsius);
}
std::string speed(double rpm) {
    return Formatters::decimal(rpm, 0) + " rpm";
}

constexpr double kilobyte = 1000;
constexpr double mebibyte = 1 << 20;
constexpr int tall = 4;

constexpr Figure diskFigure(std::string_view title) {
    return {.title = title, .words = diskRate, .leastTop = kilobyte, .pieces = {}};
}
constexpr Figure netFigure(std::string_view title) {
    return {.title = title, .words = netRate, .leastTop = kilobyte, .pieces = {}};
}

/// Adds a figure to `figures` when some row has a value of it.
/// @param value    of a row, and the highest within it
template <class Row, class ValueOf>
void add(std::vector<Figure>& figures, Figure figure, const std::vector<Row>& rows, ValueOf value) {
    for (const Row& row : rows) {
        const std::pair<Value, Value> found = value(row);
        if (found.first)
            figure.pieces.push_back({.start = static_cast<double>(row.bucket),
                                     .length = static_cast<double>(row.res),
                                     .value = *found.first,
                                     .highest = found.second.value_or(*found.first)});
    }
    if (!figure.pieces.empty())
        figures.push_back(std::move(figure));
}

template <class Row>
void addTraffic(std::vector<Figure>& figures, const std::vector<Row>& rows) {
    const std::pair<Figure, double Row::*> traffic[] = {{diskFigure("Disk read"), &Row::diskRead},
                                                        {diskFigure("Disk write"), &Row::diskWrite},
                                                        {netFigure("Network in"), &Row::netIn},
                                                        {netFigure("Network out"), &Row::netOut}};
    for (const auto& [figure, bytes] : traffic)
        if (hasTraffic(rows, bytes))
            add(figures, figure, rows,
                [bytes = bytes](const Row& row) { return std::pair(perSecond(row.*bytes, row.res), Value()); });
}

} // namespace

std::vector<Figure> machineFigures(const std::vector<SystemRow>& rows) {
    using Values = std::pair<Value, Value>;
    std::vector<Figure> figures;
    add(figures, {.title = "Processor", .words = share, .leastTop = 0.1, .height = tall, .pieces = {}}, rows,
        [](const SystemRow& row) { return Values(row.cpu, row.cpuMax); });
    add(figures,
        {.title = "Memory", .words = memory, .leastTop = mebibyte, .isInBinary = true, .height = tall, .pieces = {}},
        rows, [](const SystemRow& row) { return Values(row.memUsed, row.memUsedMax); });
    addTraffic(figures, rows);
    add(figures, {.title = "Graphics", .words = share, .leastTop = 0.1, .pieces = {}}, rows,
        [](const SystemRow& row) { return Values(row.gpu, row.gpuMax); });
    add(figures, {.title = "Temperature", .words = temperature, .leastTop = 50, .pieces = {}}, rows,
        [](const SystemRow& row) { return Values(row.cpuTemp, row.cpuTempMax); });
    add(figures, {.title = "Power", .words = power, .leastTop = 1, .pieces = {}}, rows,
        [](const SystemRow& row) { return Values(row.powerW, std::nullopt); });
    add(figures, {.title = "Battery", .words = percentage, .leastTop = 100, .pieces = {}}, rows,
        [](const SystemRow& row) { return Values(row.batteryPct, std::nullopt); });
    add(figures, {.title = "Fans", .words = speed, .leastTop = 1000, .pieces = {}}, rows,
        [](const SystemRow& row) { return Values(row.fanRPM, std::nullopt); });
    return figures;
}

std::vector<Figure> applicationFigures(const std::vector<AppRow>& rows) {
    std::vector<Figure> figures;
    add(figures, {.title = "Processor", .words = Formatters::cpu, .leastTop = 0.1, .height = tall, .pieces = {}}, rows,
        [](const AppRow& row) { return std::pair(Value(row.cpu), Value(row.cpuMax)); });
    add(figures,
        {.title = "Memory", .words = memory, .leastTop = mebibyte, .isInBinary = true, .height = tall, .pieces = {}},
        rows, [](const AppRow& row) { return std::pair(Value(row.mem), Value(row.memMax)); });
    addTraffic(figures, rows);
    return figures;
}

} // namespace ostrivane::cli
