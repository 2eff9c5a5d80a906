#include "cli/UsageTable.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <tuple>

namespace ostrivane::cli {

namespace {

constexpr int leastNameColumns = 20;
constexpr std::string_view restrictedMark = " (restricted)";

/// One column: its heading, its width, and its words.
struct Column {
    std::string_view title;
    int width;
    std::optional<UsageSort> sort; ///< the order that goes by it
    std::string (*text)(const UsageRow& row);
};

std::string orDash(std::string text, bool isKnown) {
    return isKnown ? std::move(text) : std::string(Formatters::dash);
}

std::string rateOrDash(const std::optional<double>& rate) {
    return orDash(Formatters::rate(rate), rate.has_value());
}

/// In the order in which they go when the window is narrow: the last first.
constexpr std::array<Column, 8> columnsRight{{
    {"CPU", 7, UsageSort::cpu,
     [](const UsageRow& row) { return orDash(Formatters::cpu(row.cpu.value_or(0)), row.cpu.has_value()); }},
    {"MEMORY", 10, UsageSort::memory,
     [](const UsageRow& row) { return orDash(Formatters::bytes(row.memory.value_or(0)), row.memory.has_value()); }},
    {"READ", 11, UsageSort::disk,
     [](const UsageRow& row) { return orDash(Formatters::diskRate(row.diskRead), row.diskRead.has_value()); }},
    {"WRITE", 11, UsageSort::disk,
     [](const UsageRow& row) { return orDash(Formatters::diskRate(row.diskWrite), row.diskWrite.has_value()); }},
    {"IN", 11, UsageSort::net, [](const UsageRow& row) { return rateOrDash(row.netIn); }},
    {"OUT", 11, UsageSort::net, [](const UsageRow& row) { return rateOrDash(row.netOut); }},
    {"GPU", 6, UsageSort::gpu, [](const UsageRow& row) { return Formatters::percent(row.gpu); }},
    {"POWER", 9, UsageSort::power,
     [](const UsageRow& row) { return orDash(Formatters::power(row.powerW), row.powerW.has_value()); }},
}};
constexpr int idColumns = 8;

/// Those that fit beside a name of readable length.
std::span<const Column> fittingColumns(int width) {
    int used = leastNameColumns + idColumns;
    std::size_t count = 0;
    for (; count < columnsRight.size() && used + columnsRight[count].width <= width; ++count)
        used += columnsRight[count].width;
    return std::span(columnsRight).first(count);
}

int nameColumns(int width) {
    int used = idColumns;
    for (const Column& column : fittingColumns(width))
        used += column.width;
    return std::max(width - used, 1);
}

std::string leftAligned(std::string_view text, int width) {
    std::string out = Text::fitted(text, width);
    out.append(static_cast<std::size_t>(std::max(0, width - Text::columns(out))), ' ');
    return out;
}

std::string rightAligned(std::string_view text, int width) {
    const int gap = std::max(0, width - Text::columns(text));
    return std::string(static_cast<std::size_t>(gap), ' ') + std::string(text);
}

std::optional<double> sum(const std::optional<double>& a, const std::optional<double>& b) {
    return a || b ? std::optional(a.value_or(0) + b.value_or(0)) : std::nullopt;
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
    std::vector<std::tuple<double, std::string, std::size_t>> keys(rows.size());
    for (std::size_t index = 0; index < rows.size(); ++index)
        keys[index] = {-weight(rows[index], choice.sort), Text::lowered(rows[index].name), index};
    std::ranges::sort(keys);
    if (choice.limit > 0 && keys.size() > choice.limit)
        keys.resize(choice.limit);
    std::vector<UsageRow> sorted;
    sorted.reserve(keys.size());
    for (const auto& [ignoredWeight, ignoredName, index] : keys)
        sorted.push_back(std::move(rows[index]));
    rows = std::move(sorted);
}

bool holds(const std::optional<std::string>& text, std::string_view needle) {
    return text && Text::lowered(*text).find(needle) != std::string::npos;
}

} // namespace

UsageRow usageRow(const ProcessSnapshot& process, std::size_t source) {
    UsageRow row{.name = process.name, .idText = std::to_string(process.pid), .source = source};
    row.isRestricted = process.isRestricted;
    // What a restricted process shows came from the sampler; without it there is nothing, and 0 would be a guess.
    if (!process.isRestricted || process.memoryIsRSS) {
        row.cpu = process.cpu;
        row.memory = process.memory;
    }
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

UsageRow usageRow(const ApplicationSnapshot& application, std::size_t source) {
    UsageRow row{.name = application.name, .idText = std::to_string(application.processCount()), .source = source};
    row.cpu = application.cpu;
    row.memory = application.memory;
    row.diskRead = application.diskReadRate;
    row.diskWrite = application.diskWriteRate;
    row.netIn = application.netInRate;
    row.netOut = application.netOutRate;
    row.gpu = application.gpu;
    row.powerW = application.powerW;
    row.isRestricted = application.hasRestricted;
    return row;
}

std::vector<UsageRow> processRows(const SystemSnapshot& snapshot, const UsageChoice& choice) {
    const std::string needle = Text::lowered(choice.filter);
    std::vector<UsageRow> rows;
    for (std::size_t index = 0; index < snapshot.processes.size(); ++index) {
        const ProcessSnapshot& process = snapshot.processes[index];
        if (needle.empty() || holds(process.name, needle) || holds(process.path, needle) ||
            holds(process.commandLine, needle) || holds(process.user, needle))
            rows.push_back(usageRow(process, index));
    }
    arrange(rows, choice);
    return rows;
}

std::vector<UsageRow> applicationRows(const SystemSnapshot& snapshot, const UsageChoice& choice) {
    const std::string needle = Text::lowered(choice.filter);
    std::vector<UsageRow> rows;
    for (std::size_t index = 0; index < snapshot.applications.size(); ++index) {
        const ApplicationSnapshot& application = snapshot.applications[index];
        if (needle.empty() || holds(application.name, needle) || holds(application.key, needle) ||
            holds(application.bundleID, needle))
            rows.push_back(usageRow(application, index));
    }
    arrange(rows, choice);
    return rows;
}

StyledLine usageHeading(std::string_view idTitle, UsageSort sort, int width) {
    StyledLine line{{leftAligned(sort == UsageSort::name ? "NAME ▾" : "NAME", nameColumns(width)), Style::bold},
                    {rightAligned(idTitle, idColumns), Style::bold}};
    for (const Column& column : fittingColumns(width)) {
        const bool isOrder = column.sort == sort;
        line.push_back({rightAligned(std::string(column.title) + (isOrder ? "▾" : ""), column.width),
                        isOrder ? Style::accent : Style::bold});
    }
    return fitted(line, width);
}

StyledLine usageLine(const UsageRow& row, int width) {
    const int room = nameColumns(width);
    std::string name = Text::visible(row.name);
    if (row.isRestricted)
        name = Text::fitted(name, room - Text::columns(restrictedMark)) + std::string(restrictedMark);
    StyledLine line{{leftAligned(name, room)}, {rightAligned(row.idText, idColumns), Style::dim}};
    for (const Column& column : fittingColumns(width))
        line.push_back({rightAligned(column.text(row), column.width)});
    return fitted(line, width);
}

} // namespace ostrivane::cli
