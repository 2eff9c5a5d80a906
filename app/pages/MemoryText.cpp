#include "app/pages/MemoryText.hpp"

#include "app/model/AppState.hpp"
#include "app/pages/CountText.hpp"
#include "app/pages/Figure.hpp"
#include "app/pages/RangePicker.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/PlatformWords.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace ostrivane {

namespace {

constexpr double hour = 3600;
constexpr double strongGrowth = 300.0 * 1024 * 1024;

struct Part {
    QString name;
    std::uint64_t MemorySnapshot::*bytes;
    Series series;
};

const std::array<Part, 5>& memoryParts() {
    static const std::array<Part, 5> parts{{{QStringLiteral("App"), &MemorySnapshot::app, Series::s4},
                                            {QStringLiteral("Wired"), &MemorySnapshot::wired, Series::s1},
                                            {QStringLiteral("Compressed"), &MemorySnapshot::compressed, Series::s2},
                                            {QStringLiteral("Cached"), &MemorySnapshot::cached, Series::cached},
                                            {QStringLiteral("Free"), &MemorySnapshot::free, Series::track}}};
    return parts;
}

double number(std::uint64_t bytes) {
    return static_cast<double>(bytes);
}

/// The parts are read one after the other, so that together they may exceed the total.
double wholeOf(const MemorySnapshot& memory) {
    double sum = 0;
    for (const Part& part : memoryParts())
        sum += number(memory.*part.bytes);
    return std::max(sum, number(memory.total));
}

QString ofTotal(std::uint64_t total) {
    return QStringLiteral("of %1").arg(text(Formatters::bytes(total)));
}

QString pagesText(double perSecond) {
    constexpr double most = 1e15; // far more than any machine moves, and an integer still holds it
    return std::isfinite(perSecond) ? countText(static_cast<std::int64_t>(std::clamp(perSecond, 0.0, most)))
                                    : text(Formatters::dash);
}

Condition conditionOf(MemoryPressure pressure) {
    switch (pressure) {
    case MemoryPressure::normal:
        return Condition::good;
    case MemoryPressure::warning:
        return Condition::elevated;
    case MemoryPressure::critical:
        return Condition::high;
    }
    return Condition::unknown;
}

std::vector<Stat> statsOf(const AppState& state) {
    const MemorySnapshot& memory = state.snapshot->memory;
    const bool known = state.hasFirstSample;
    const QString perSecond = QStringLiteral("pages/s");
    Stat swap{QStringLiteral("Swap used"), pendingFigure()};
    if (known && memory.swapTotal == 0)
        swap.value = QStringLiteral("None");
    else if (known)
        swap = {QStringLiteral("Swap used"), text(Formatters::bytes(memory.swapUsed)), ofTotal(memory.swapTotal)};
    return {{QStringLiteral("Used"), figure(state, Formatters::bytes(memory.used)),
             known ? ofTotal(memory.total) : QString()},
            std::move(swap),
            {QStringLiteral("Swapped in"), known ? pagesText(memory.swapInRate) : pendingFigure(), perSecond},
            {QStringLiteral("Swapped out"), known ? pagesText(memory.swapOutRate) : pendingFigure(), perSecond}};
}

std::vector<KeyValue> factsOf(const AppState& state, const MemoryFacts& facts) {
    const MemorySnapshot& memory = state.snapshot->memory;
    std::vector<KeyValue> lines;
    if (!state.hasFirstSample)
        return lines;
    if (facts.elevatedFor && memory.pressure != MemoryPressure::normal)
        lines.push_back({QStringLiteral("Elevated for"), text(Formatters::duration(*facts.elevatedFor))});
    const auto now = static_cast<double>(memory.pressurePercent());
    if (facts.peakToday)
        lines.push_back(
            {QStringLiteral("Peak today"), text(Formatters::percent(std::max(*facts.peakToday, now) / 100))});
    const auto available = static_cast<double>(std::clamp<std::int64_t>(memory.availablePercent, 0, 100));
    lines.push_back({QStringLiteral("Available"), text(Formatters::percent(available / 100))});
    return lines;
}

} // namespace

MemoryText presentMemory(const AppState& state, const MemoryFacts& facts, const PlatformWords& words) {
    const MemorySnapshot& memory = state.snapshot->memory;
    const bool known = state.hasFirstSample;
    MemoryText shown;
    if (memory.total > 0)
        shown.subtitle = text(Formatters::bytes(memory.total)) + QStringLiteral(" of memory");
    if (const QString every = everyText(facts.interval); !shown.subtitle.isEmpty() && !every.isEmpty())
        shown.subtitle += QStringLiteral(" · updated ") + every;
    const double whole = wholeOf(memory);
    for (const Part& part : memoryParts()) {
        const QString value = figure(state, Formatters::bytes(memory.*part.bytes));
        shown.parts.push_back({.caption = part.name, .value = value, .series = part.series});
        if (known && whole > 0 && part.series != Series::track)
            shown.bar.push_back(
                {part.series, number(memory.*part.bytes) / whole, part.name + QStringLiteral(" ") + value});
    }
    shown.stats = statsOf(state);
    if (known && memory.swapIsMemory && memory.swapTotal > 0)
        shown.swapNote = QStringLiteral("Swap is compressed memory on this %1. None of it is written to a disk.")
                             .arg(text(words.computer));

    const QString used = figure(state, Formatters::bytes(memory.used));
    shown.pressure = known ? static_cast<double>(memory.pressurePercent()) / 100 : 0;
    shown.pressureValue = figure(state, Formatters::percent(shown.pressure));
    shown.condition = known ? conditionOf(memory.pressure) : Condition::unknown;
    shown.conditionWord = known ? text(label(memory.pressure)) : QStringLiteral("Measuring…");
    shown.pressureFacts = factsOf(state, facts);
    shown.usedLegend = {{Series::s4, QStringLiteral("Used"), used}};
    shown.pressureLegend = {{Series::s5, QStringLiteral("Pressure"), shown.pressureValue}};
    if (memory.swapTotal > 0)
        shown.pressureLegend.push_back(
            {Series::s2, QStringLiteral("Swap"), figure(state, Formatters::bytes(memory.swapUsed))});
    return shown;
}

std::optional<double> changeOverHour(std::span<const TimedValue> memory, double now) {
    const auto first = std::ranges::find_if(memory, [&](const TimedValue& point) { return now - point.time <= hour; });
    if (memory.end() - first < 2)
        return std::nullopt;
    return memory.back().value - first->value;
}

QString changeText(std::optional<double> bytes) {
    if (!bytes || !std::isfinite(*bytes))
        return text(Formatters::dash);
    QString amount = text(Formatters::bytes(std::abs(*bytes)));
    if (*bytes == 0)
        return amount;
    return (*bytes > 0 ? QStringLiteral("+") : QString(QChar(0x2212))) + amount;
}

bool isStrongGrowth(std::optional<double> bytes) {
    return bytes && *bytes >= strongGrowth;
}

QString watchedText(std::optional<double> seconds) {
    constexpr double slack = 60; // points lie half a minute apart
    if (!seconds || *seconds >= hour - slack)
        return {};
    return QStringLiteral("Watched for %1 so far").arg(text(Formatters::duration(*seconds)));
}

QString memoryAxisText(double bytes) {
    if (bytes <= 0)
        return QStringLiteral("0");
    const std::string whole = Formatters::bytes(bytes, 0);
    const std::string exact = Formatters::bytes(bytes, 1);
    // "32.0 GB" tells no more than "32 GB"
    return text(exact.find(".0 ") == std::string::npos ? exact : whole);
}

} // namespace ostrivane
