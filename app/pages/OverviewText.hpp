#pragma once

#include "app/widgets/RankList.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/TotalsList.hpp"
#include "core/model/Page.hpp"

#include <QString>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

struct AppState;

/// What the head of the overview says.
struct OverviewHead {
    QString status;
    std::optional<Condition> condition; ///< absent before the machine was judged
    QString machine;
    QString uptime; ///< "· up 6d 4h"; empty when it is not known
    bool isRecording = false;
};
OverviewHead presentOverviewHead(const AppState& state);

/// One side of the machine's condition, in a row.
struct HealthLine {
    QString name;
    std::string symbol;
    Condition condition = Condition::unknown;
    QString label;
    Page page = Page::health; ///< that explains it

    friend bool operator==(const HealthLine&, const HealthLine&) = default;
};
/// Empty until the machine was measured and judged.
std::vector<HealthLine> presentHealthLines(const AppState& state);

enum class RankFigure { memory, cpu };

/// The applications that use the most, largest first; empty before the first sample. What belongs to no application,
/// the system's own, is listed by its load alone: its memory is no one's to free.
/// @param held  the rows as they stand: then those, in their order, with their figures of now
std::vector<RankRow> presentRanks(const AppState& state, RankFigure figure, const std::vector<RankRow>& held = {});
inline constexpr std::size_t rankedApplications = 7;

/// What was moved and used, today, over 7 and over 30 days. In the order of `totalsPages`.
std::vector<TotalsRow> presentTotals(const AppState& state);
/// Where each of the totals leads.
inline constexpr std::array<Page, 5> totalsPages{Page::disk, Page::disk, Page::network, Page::network, Page::battery};

} // namespace ostrivane
