#include "app/pages/Findings.hpp"

#include "app/model/AppModel.hpp"
#include "app/pages/Links.hpp"
#include "app/widgets/Strings.hpp"
#include "core/judgement/HealthCategory.hpp"
#include "core/model/Page.hpp"

#include <algorithm>

namespace ostrivane {

namespace {

Condition conditionOf(Insight::Level level) {
    switch (level) {
    case Insight::Level::info:
        return Condition::unknown;
    case Insight::Level::notice:
        return Condition::info;
    case Insight::Level::warning:
        return Condition::elevated;
    }
    return Condition::unknown;
}

bool has(const std::vector<HealthCategory>& health, HealthCategory::Status status) {
    return std::ranges::find(health, status, &HealthCategory::status) != health.end();
}

} // namespace

std::vector<EvidenceRow> insightRows(const std::vector<Insight>& insights, std::optional<std::size_t> most) {
    const std::size_t count = std::min(insights.size(), most.value_or(insights.size()));
    std::vector<EvidenceRow> rows;
    rows.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        const Insight& insight = insights[index];
        rows.push_back({.id = insight.id,
                        .icon = insight.symbol,
                        .condition = conditionOf(insight.level),
                        .title = text(insight.title),
                        .evidence = text(insight.evidence),
                        .leadsSomewhere = insight.destination || insight.appKey});
    }
    return rows;
}

void openInsight(AppModel& model, const std::string& id) {
    const std::vector<Insight>& insights = model.state().insights;
    const auto found = std::ranges::find(insights, id, &Insight::id);
    if (found == insights.end())
        return;
    if (!found->destination && !found->appKey)
        return;
    // Settled ahead of the first step: the list may change while others hear of it.
    const auto named = found->destination ? fromRawValue<Page>(*found->destination) : std::nullopt;
    const Page page = named.value_or(Page::applications);
    if (found->appKey && page == Page::applications)
        return openApp(model, *found->appKey);
    model.selectApp(found->appKey);
    model.select(page);
}

std::optional<Condition> worstCondition(const std::vector<HealthCategory>& health) {
    using Status = HealthCategory::Status;
    if (health.empty())
        return std::nullopt;
    if (has(health, Status::high))
        return Condition::high;
    if (has(health, Status::elevated))
        return Condition::elevated;
    return has(health, Status::good) ? Condition::good : Condition::unknown;
}

} // namespace ostrivane
