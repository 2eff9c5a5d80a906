#include "cli/UsageTable.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <tuple>
#include <unordered_map>

namespace ostrivane::cli {

namespace {

constexpr int leastNameColumns = 18;
constexpr int mostNameColumns = 60;
constexpr int idColumns = 8;
constexpr std::string_view restrictedMark = " *";

/// One column: its heading, its width, and its words.
struct Column {
    std::string_view title;
    int width;
    UsageSort sort; ///< the order that goes by it
    std::string (*text)(const UsageRow& row);
};

std::string orDash(std::string text, bool isKnown) {
    return isKnown ? std::move(text) : std::string(Formatters::dash);
}

std::string diskRate(const std::optional<double>& rate) {
    return orDash(Formatters::diskRate(rate), rate.has_value());
}

std::string netRate(const std::optional<double>& rate) {
    return orDash(Formatters::rate(rate), rate.has_value());
}

std::optional<double> sum(const std::optional<double>& a, const std::optional<double>& b) {
    return a || b ? std::optional(a.value_or(0) + b.value_or(0)) : std::nullopt;
}

constexpr Column cpuColumn{"CPU", 7, UsageSort::cpu, [](const UsageRow& row) {
                               return orDash(Formatters::cpu(row.cpu.value_or(0)), row.cpu.has_value());
                           }};
constexpr Column memoryColumn{"MEMORY", 10, UsageSort::memory, [](const UsageRow& row) {
                                  return orDash(Formatters::bytes(row.memory.value_or(0)), row.memory.has_value());
                              }};
constexpr Column gpuColumn{"GPU", 6, UsageSort::gpu, [](const UsageRow& row) { return Formatters::percent(row.gpu); }};
constexpr Column powerColumn{"POWER", 9, UsageSort::power, [](const UsageRow& row) {
                                 return orDash(Formatters::power(row.powerW), row.powerW.has_value());
                             }};
constexpr std::array<Column, 8> wideColumns{
    {cpuColumn,
     memoryColumn,
     {"READ", 11, UsageSort::disk, [](const UsageRow& row) { return diskRate(row.diskRead); }},
     {"WRITE", 11, UsageSort::disk, [](const UsageRow& row) { return diskRate(row.diskWrite); }},
     {"IN", 11, UsageSort::net, [](const UsageRow& row) { return netRate(row.netIn); }},
     {"OUT", 11, UsageSort::net, [](const UsageRow& row) { return netRate(row.netOut); }},
     gpuColumn,
     powerColumn}};
constexpr std::array<Column, 6> narrowColumns{
    {cpuColumn,
     memoryColumn,
     {"DISK", 11, UsageSort::disk, [](const UsageRow& row) { return diskRate(sum(row.diskRead, row.diskWrite)); }},
     {"NET", 11, UsageSort::net, [](const UsageRow& row) { return netRate(sum(row.netIn, row.netOut)); }},
     gpuColumn,
     powerColumn}};

int widthOf(std::span<const Column> columns) {
    int sum = 0;
    for (const Column& column : columns)
        sum += column.width;
    return sum;
}

/// Those that fit beside a name of readable length, the one that the order goes by before any other.
std::vector<Column> fittingColumns(UsageSort sort, int width) {
    int room = width - leastNameColumns - idColumns;
    if (widthOf(wideColumns) <= room)
        return {wideColumns.begin(), wideColumns.end()};
    for (const Column& column : narrowColumns)
        if (column.sort == sort)
            room -= column.width;
    std::vector<Column> fitting;
    bool othersFit = true;
    for (const Column& column : narrowColumns) {
        if (column.sort == sort) {
            if (room >= 0)
                fitting.push_back(column);
            continue;
        }
        othersFit = othersFit && column.width <= room;
        if (!othersFit)
            continue;
        fitting.push_back(column);
        room -= column.width;
    }
    return fitting;
}

/// What the order goes by, larger first; absent last.
double weight(const UsageRow& row, UsageSort sort) {
    constexpr double absent = -1;
    switch (sort) {
    case UsageSort::cpu:
        return row.cpu.value_or(absent);
    case UsageSort::memory:
        return row.memory ? static_cast<double>(*row.memory) : absent;
    case UsageSort::disk:
        return sum(row.diskRead, row.diskWrite).value_or(absent);
    case UsageSort::net:
        return sum(row.netIn, row.netOut).value_or(absent);
    case UsageSort::gpu:
        return row.gpu.value_or(absent);
    case UsageSort::power:
        return row.powerW.value_or(absent);
    case UsageSort::name:
        return 0;
    }
    return 0;
}

void arrange(std::vector<UsageRow>& rows, const UsageChoice& choice) {
    // By length before the text itself: ids that are numbers come in the order of numbers.
    std::vector<std::tuple<double, std::string, std::size_t, std::string_view, std::size_t>> keys(rows.size());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const UsageRow& row = rows[index];
        keys[index] = {-weight(row, choice.sort), Text::lowered(row.name), row.id.size(), row.id, index};
    }
    std::ranges::sort(keys);
    if (choice.limit > 0 && keys.size() > choice.limit)
        keys.resize(choice.limit);
    std::vector<std::size_t> order;
    order.reserve(keys.size());
    for (const auto& key : keys)
        order.push_back(std::get<4>(key));
    std::vector<UsageRow> sorted;
    sorted.reserve(order.size());
    for (const std::size_t index : order)
        sorted.push_back(std::move(rows[index]));
    rows = std::move(sorted);
}

bool holds(const std::optional<std::string>& text, std::string_view needle) {
    return text && Text::lowered(*text).find(needle) != std::string::npos;
}

template <class T>
void note(std::optional<T>& known, const std::optional<T>& figure) {
    if (figure)
        known = figure;
}

/// What the processes of each application show, by its key.
std::unordered_map<std::string_view, UsageRow> shownByMembers(const std::vector<ProcessSnapshot>& processes) {
    std::unordered_map<std::string_view, UsageRow> shown;
    for (const ProcessSnapshot& process : processes) {
        const UsageRow row = usageRow(process, 0);
        UsageRow& members = shown[process.appKey];
        note(members.cpu, row.cpu);
        note(members.memory, row.memory);
        note(members.diskRead, row.diskRead);
        note(members.diskWrite, row.diskWrite);
        note(members.netIn, row.netIn);
        note(members.netOut, row.netOut);
        note(members.gpu, row.gpu);
        note(members.powerW, row.powerW);
    }
    return shown;
}

template <class T>
std::optional<T> figureIf(const std::optional<T>& isShown, const std::optional<T>& figure) {
    return isShown ? figure : std::nullopt;
}

void hideRates(UsageRow& row) {
    for (std::optional<double>* rate :
         {&row.cpu, &row.diskRead, &row.diskWrite, &row.netIn, &row.netOut, &row.gpu, &row.powerW})
        rate->reset();
}

std::vector<UsageRow> processRows(const SystemSnapshot& snapshot, std::string_view needle) {
    std::vector<UsageRow> rows;
    for (std::size_t index = 0; index < snapshot.processes.size(); ++index) {
        const ProcessSnapshot& process = snapshot.processes[index];
        if (needle.empty() || holds(process.name, needle) || holds(process.path, needle) ||
            holds(process.commandLine, needle) || holds(process.user, needle) || std::to_string(process.pid) == needle)
            rows.push_back(usageRow(process, index));
    }
    return rows;
}

std::vector<UsageRow> applicationRows(const SystemSnapshot& snapshot, std::string_view needle) {
    auto members = shownByMembers(snapshot.processes);
    std::vector<UsageRow> rows;
    for (std::size_t index = 0; index < snapshot.applications.size(); ++index) {
        const ApplicationSnapshot& application = snapshot.applications[index];
        if (needle.empty() || holds(application.name, needle) || holds(application.key, needle) ||
            holds(application.bundleID, needle))
            rows.push_back(usageRow(application, members[application.key], index));
    }
    return rows;
}

} // namespace

UsageRow usageRow(const ProcessSnapshot& process, std::size_t source) {
    const std::string pid = std::to_string(process.pid);
    UsageRow row{.id = pid, .name = process.name, .idText = pid, .source = source};
    row.isRestricted = process.isRestricted;
    row.cpu = process.knownCPU();
    row.memory = process.knownMemory();
    if (!process.isRestricted) {
        row.diskRead = process.diskReadRate;
        row.diskWrite = process.diskWriteRate;
    }
    row.netIn = process.netInRate;
    row.netOut = process.netOutRate;
    row.gpu = process.gpu;
    row.powerW = process.powerW;
    return row;
}

UsageRow usageRow(const ApplicationSnapshot& application, const UsageRow& members, std::size_t source) {
    UsageRow row{.id = application.key,
                 .name = application.name,
                 .idText = std::to_string(application.processCount()),
                 .source = source};
    row.cpu = figureIf(members.cpu, std::optional(application.cpu));
    row.memory = figureIf(members.memory, std::optional(application.memory));
    row.diskRead = figureIf(members.diskRead, std::optional(application.diskReadRate));
    row.diskWrite = figureIf(members.diskWrite, std::optional(application.diskWriteRate));
    row.netIn = figureIf(members.netIn, application.netInRate);
    row.netOut = figureIf(members.netOut, application.netOutRate);
    row.gpu = figureIf(members.gpu, application.gpu);
    row.powerW = figureIf(members.powerW, application.powerW);
    row.isRestricted = application.hasRestricted;
    return row;
}

std::vector<UsageRow> usageRows(const SystemSnapshot& snapshot, UsageSubject subject, const UsageChoice& choice) {
    const std::string needle = Text::lowered(choice.filter);
    std::vector<UsageRow> rows =
        subject == UsageSubject::processes ? processRows(snapshot, needle) : applicationRows(snapshot, needle);
    if (snapshot.interval == 0)
        std::ranges::for_each(rows, hideRates);
    arrange(rows, choice);
    return rows;
}

StyledLine usageHeading(UsageSubject subject, UsageSort sort, int width) {
    const std::vector<Column> columns = fittingColumns(sort, width);
    const int room = std::max(width - idColumns - widthOf(columns), 1);
    StyledLine line{{leftAligned(sort == UsageSort::name ? "NAME▾" : "NAME", room), Style::bold},
                    {rightAligned(subject == UsageSubject::processes ? "PID" : "PROCS", idColumns), Style::bold}};
    for (const Column& column : columns) {
        const bool isOrder = column.sort == sort;
        line.push_back({rightAligned(std::string(column.title) + (isOrder ? "▾" : ""), column.width),
                        isOrder ? Style::accent : Style::bold});
    }
    return fitted(line, width);
}

StyledLine usageLine(const UsageRow& row, UsageSort sort, int width) {
    const std::vector<Column> columns = fittingColumns(sort, width);
    const int room = std::max(width - idColumns - widthOf(columns), 1);
    std::string name = Text::visible(row.name);
    if (row.isRestricted)
        name = Text::fitted(name, room - Text::columns(restrictedMark)) + std::string(restrictedMark);
    StyledLine line{{leftAligned(name, room)}, {rightAligned(row.idText, idColumns), Style::dim}};
    for (const Column& column : columns)
        line.push_back({rightAligned(column.text(row), column.width)});
    return fitted(line, width);
}

int fullUsageWidth(const std::vector<UsageRow>& rows) {
    int longest = leastNameColumns;
    for (const UsageRow& row : rows)
        longest = std::max(longest, Text::columns(Text::visible(row.name)) +
                                        (row.isRestricted ? Text::columns(restrictedMark) : 0));
    return std::min(longest, mostNameColumns) + idColumns + widthOf(wideColumns);
}

} // namespace ostrivane::cli
