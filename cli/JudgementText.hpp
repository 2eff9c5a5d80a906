#pragma once

#include "cli/StyledText.hpp"
#include "core/history/StoredAlert.hpp"
#include "core/judgement/Alert.hpp"
#include "core/judgement/HealthCategory.hpp"
#include "core/judgement/Insight.hpp"

#include <optional>
#include <string>
#include <vector>

/// What the figures mean, for a person to read. Everything is safe to print; each mark says by its form what its colour
/// says.
namespace ostrivane::cli {

/// Each category with its evidence below it: "[!]  elevated  Memory: Elevated".
std::vector<StyledLine> healthLines(const std::vector<HealthCategory>& health, std::optional<int> width);

/// Each insight with its evidence below it; one sentence where nothing stands out.
std::vector<StyledLine> insightLines(const std::vector<Insight>& insights, std::optional<int> width);

/// Each alert with its time and what it is about; one sentence where there is none.
std::vector<StyledLine> alertLines(const std::vector<Alert>& alerts, std::optional<int> width);

/// The same as plain text. `summary` is what all of it comes to.
std::string healthText(const std::string& summary, const std::vector<HealthCategory>& health, std::optional<int> width);
std::string insightsText(const std::vector<Insight>& insights, std::optional<int> width);
std::string alertsText(const std::vector<StoredAlert>& alerts, std::optional<int> width);

} // namespace ostrivane::cli
