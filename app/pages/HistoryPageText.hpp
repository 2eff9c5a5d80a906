#pragma once

#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartData.hpp"
#include "app/widgets/TableColumn.hpp"
#include "core/history/AppMoment.hpp"
#include "core/history/AppUsageSummary.hpp"
#include "core/history/HistoryRange.hpp"
#include "core/history/StoredSession.hpp"
#include "core/history/SystemRow.hpp"
#include "core/model/Date.hpp"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// In the order in which they are shown.
enum class HistoryMetric { cpu, memory, network, disk, gpu, temperature, power, battery };
inline constexpr int historyMetrics = 8;

/// One figure of the machine over a range: its summary, and its lines on the common axis of time.
struct HistoryStrip {
    HistoryMetric metric = HistoryMetric::cpu;
    Series series = Series::s1;
    QString name;
    QString value;                      ///< the mean, or the total
    QString remark;                     ///< behind the value: "in"
    QString detail;                     ///< the peak, or the other direction's total
    std::optional<Series> detailSeries; ///< where `detail` speaks of the second line
    ChartAxis axis;
    std::vector<HistoryLine> lines;
};

/// Strips of what the rows tell something of; the others are left out.
/// @param rows  oldest first
/// @param totalMemory  bytes of this machine; 0: not known
std::vector<HistoryStrip> presentStrips(const std::vector<SystemRow>& rows, std::uint64_t totalMemory);

/// The row that holds `time`, in seconds since 1970; null in a gap.
const SystemRow* rowAt(const std::vector<SystemRow>& rows, double time);

/// A session as it stands over the strips.
struct SessionSpan {
    QString name;
    Date start;
    Date end;

    friend bool operator==(const SessionSpan&, const SessionSpan&) = default;
};

/// The sessions whose end is known, and the one that is being recorded, up to `now`.
/// @param recording  name and beginning of the session under way
std::vector<SessionSpan> sessionSpans(const std::vector<StoredSession>& stored,
                                      const std::optional<std::pair<std::string, Date>>& recording, Date now);
std::vector<ChartBand> sessionBands(const std::vector<SessionSpan>& sessions, double since, double until);

/// What the cursor stands on.
struct MomentText {
    struct Line {
        std::optional<Series> series{};
        QString name;
        QString value;

        friend bool operator==(const Line&, const Line&) = default;
    };
    QString title;             ///< when: "Today, 10:32"
    std::vector<Line> figures; ///< empty in a gap
    QString note;              ///< in a gap, why there are none
    QString appsTitle;         ///< empty: nothing is said of applications
    std::vector<Line> apps;
    QString session;

    friend bool operator==(const MomentText&, const MomentText&) = default;
};

/// @param apps  of the row at `time`; absent while they are being asked for
MomentText presentMoment(const std::vector<HistoryStrip>& strips, const SystemRow* row, double time,
                         const std::optional<std::vector<AppMoment>>& apps, const std::vector<SessionSpan>& sessions,
                         Date now);

/// The whole of it in one sentence after the other, to be read out.
QString spoken(const MomentText& moment);

/// "Kept on this machine for 30 days · since 14 October".
QString keptText(std::int64_t days, std::optional<Date> earliest, Date now);

/// "Busiest applications, 24 hours".
QString busiestTitle(HistoryRange range);

/// One line of the table of the busiest applications.
struct BusyApp {
    const AppUsageSummary* usage = nullptr;
    double share = 0;                        ///< of the processor time of the busiest one, 0 to 1
    std::optional<std::string> bundlePath{}; ///< of one that runs now
};
std::vector<TableColumn<BusyApp>> busyColumns();

} // namespace ostrivane
