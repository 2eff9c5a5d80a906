#pragma once

#include "app/widgets/EvidenceList.hpp"
#include "core/judgement/Insight.hpp"

#include <optional>
#include <vector>

namespace ostrivane {

struct HealthCategory;
class AppModel;

/// The first `most` insights as rows; all of them when absent.
std::vector<EvidenceRow> insightRows(const std::vector<Insight>& insights,
                                     std::optional<std::size_t> most = std::nullopt);

/// Goes where the insight of that id leads, with its application selected. Nothing when it is gone by now.
void openInsight(AppModel& model, const std::string& id);

/// The worst of what was judged; `unknown` when nothing could be, absent when nothing was yet.
std::optional<Condition> worstCondition(const std::vector<HealthCategory>& health);

} // namespace ostrivane
