#include "app/pages/OverviewText.hpp"

#include "app/model/AppState.hpp"
#include "app/pages/Findings.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/Strings.hpp"
#include "core/attribution/AppGrouper.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/SumText.hpp"

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

double figureOf(const ApplicationSnapshot& app, RankFigure figure) {
    const double value = figure == RankFigure::memory ? static_cast<double>(app.memory) : app.cpu;
    return std::isfinite(value) ? value : 0;
}

RankRow rowOf(const ApplicationSnapshot& app, RankFigure figure) {
    return {.key = app.key,
            .name = app.name,
            .bundlePath = app.bundlePath,
            .figure = text(figure == RankFigure::memory ? Formatters::bytes(app.memory) : Formatters::cpu(app.cpu))};
}

std::vector<const ApplicationSnapshot*> largest(const std::vector<ApplicationSnapshot>& apps, RankFigure figure) {
    std::vector<const ApplicationSnapshot*> found;
    found.reserve(apps.size());
    for (const ApplicationSnapshot& app : apps)
        if (figure == RankFigure::cpu || app.key != AppGrouper::systemKey)
            found.push_back(&app);
    const auto count = static_cast<std::ptrdiff_t>(std::min(found.size(), rankedApplications));
    std::ranges::partial_sort(found, found.begin() + count, [&](const auto* left, const auto* right) {
        const double one = figureOf(*left, figure), other = figureOf(*right, figure);
        return one != other ? one > other : left->key < right->key; // equals keep their places from tick to tick
    });
    found.resize(static_cast<std::size_t>(count));
    return found;
}

TotalsRow totals(const AppState& state, const QString& name, double Totals::*figure, std::string (*words)(double)) {
    return {.name = name,
            .figures = {text(words(state.todayTotals.*figure)), text(words(state.weekTotals.*figure)),
                        text(words(state.monthTotals.*figure))}};
}

} // namespace

OverviewHead presentOverviewHead(const AppState& state) {
    OverviewHead head{.status = QStringLiteral("Measuring…"), .isRecording = state.session.has_value()};
    if (state.hasFirstSample && !state.health.empty()) {
        head.status = text(state.statusSummary());
        head.condition = worstCondition(state.health);
    }
    if (state.tick > 0)
        head.machine = text(state.snapshot->macModel);
    if (const double uptime = state.snapshot->cpu.uptime; uptime > 0)
        head.uptime = text("· up " + Formatters::duration(uptime));
    return head;
}

std::vector<HealthLine> presentHealthLines(const AppState& state) {
    std::vector<HealthLine> lines;
    if (!state.hasFirstSample)
        return lines;
    for (const HealthCategory& category : state.health)
        lines.push_back({.name = text(category.name),
                         .symbol = category.symbol,
                         .condition = conditionOf(category.status),
                         .label = text(category.label),
                         .page = fromRawValue<Page>(category.destination).value_or(Page::health)});
    return lines;
}

std::vector<RankRow> presentRanks(const AppState& state, RankFigure figure, const std::vector<RankRow>& held) {
    std::vector<RankRow> rows;
    if (!state.hasFirstSample)
        return rows;
    const std::vector<const ApplicationSnapshot*> most = largest(state.snapshot->applications, figure);
    const double top = most.empty() ? 0 : figureOf(*most.front(), figure);
    const auto add = [&](const ApplicationSnapshot& app) {
        rows.push_back(rowOf(app, figure));
        rows.back().share = top > 0 ? std::min(figureOf(app, figure) / top, 1.0) : 0;
    };
    if (held.empty())
        for (const ApplicationSnapshot* app : most)
            add(*app);
    for (const RankRow& row : held) {
        if (const ApplicationSnapshot* app = state.app(row.key))
            add(*app);
        else
            rows.push_back({.key = row.key,
                            .name = row.name,
                            .bundlePath = row.bundlePath,
                            .figure = text(Formatters::dash),
                            .isGone = true});
    }
    return rows;
}

std::vector<TotalsRow> presentTotals(const AppState& state) {
    using SumText::amount;
    return {totals(state, QStringLiteral("Read"), &Totals::diskRead, amount),
            totals(state, QStringLiteral("Written"), &Totals::diskWrite, amount),
            totals(state, QStringLiteral("Received"), &Totals::netIn, amount),
            totals(state, QStringLiteral("Sent"), &Totals::netOut, amount),
            totals(state, QStringLiteral("Energy"), &Totals::energyWh, SumText::energy)};
}

} // namespace ostrivane
