#include "app/pages/HistoryPageText.hpp"

#include "app/model/DateWords.hpp"
#include "app/widgets/AppIcons.hpp"
#include "app/widgets/ChartShape.hpp"
#include "app/widgets/Strings.hpp"
#include "core/history/RowRate.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/SumText.hpp"
#include "core/model/Text.hpp"

#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace ostrivane {

namespace {

using Words = std::function<QString(double)>;

QString percent(double fraction) {
    return text(Formatters::percent(fraction));
}
QString charge(double ofHundred) {
    return text(Formatters::percent(ofHundred / 100));
}
QString memory(double bytes) {
    return text(Formatters::bytes(bytes));
}
QString netRate(double rate) {
    return text(Formatters::rate(rate));
}
QString diskRate(double rate) {
    return text(Formatters::diskRate(rate));
}
QString temperature(double celsius) {
    return text(Formatters::temperature(celsius));
}
QString power(double watts) {
    return text(Formatters::power(watts));
}
QString amount(double bytes) {
    return text(SumText::amount(bytes));
}

/// @param value  of a row; absent where it tells nothing
/// @param peak  the highest within the row
template <class Value, class Peak>
HistoryLine line(Series series, const QString& name, const Words& words, const std::vector<SystemRow>& rows,
                 Value value, Peak peak) {
    HistoryLine made{.series = series, .name = name, .points = {}, .isDashed = false, .text = words};
    for (const SystemRow& row : rows) {
        const std::optional<double> mean = value(row);
        if (mean && std::isfinite(*mean) && row.res > 0)
            made.points.push_back({.time = static_cast<double>(row.bucket),
                                   .length = static_cast<double>(row.res),
                                   .value = *mean,
                                   .peak = peak(row)});
    }
    return made;
}

template <class Value>
HistoryLine line(Series series, const QString& name, const Words& words, const std::vector<SystemRow>& rows,
                 Value value) {
    return line(series, name, words, rows, value, [](const SystemRow&) { return std::optional<double>(); });
}

HistoryLine trafficLine(Series series, const QString& name, const Words& words, const std::vector<SystemRow>& rows,
                        double SystemRow::*bytes) {
    return line(series, name, words, rows, [bytes](const SystemRow& row) { return perSecond(row.*bytes, row.res); });
}

double integral(const HistoryLine& line) {
    double sum = 0;
    for (const HistoryPoint& point : line.points)
        sum += point.value * point.length;
    return sum;
}

/// Over the time that the points cover.
double mean(const HistoryLine& line) {
    double covered = 0;
    for (const HistoryPoint& point : line.points)
        covered += point.length;
    return integral(line) / covered;
}

double peak(const HistoryLine& line) {
    double most = -std::numeric_limits<double>::infinity();
    for (const HistoryPoint& point : line.points)
        most = std::max(most, point.peak.value_or(point.value));
    return most;
}

QString peakText(const HistoryLine& line) {
    return QStringLiteral("peak %1").arg(line.text(peak(line)));
}

ChartAxis axis(ChartAxis::Kind kind, const Words& label, double most = 1) {
    return {.kind = kind, .most = most, .binary = false, .label = label};
}

void addStrip(std::vector<HistoryStrip>& strips, HistoryMetric metric, const ChartAxis& axis, HistoryLine line,
              const QString& detail) {
    strips.push_back({.metric = metric,
                      .series = line.series,
                      .name = line.name,
                      .value = line.text(mean(line)),
                      .remark = {},
                      .detail = detail,
                      .detailSeries = std::nullopt,
                      .axis = axis,
                      .lines = {std::move(line)}});
}

/// The same where every point has its highest value.
void addStrip(std::vector<HistoryStrip>& strips, HistoryMetric metric, const ChartAxis& axis, HistoryLine line) {
    if (line.points.empty())
        return;
    const QString highest = peakText(line);
    addStrip(strips, metric, axis, std::move(line), highest);
}

struct Direction {
    QString name;
    double SystemRow::*bytes;
    QString word; ///< behind the total
};

void addTraffic(std::vector<HistoryStrip>& strips, HistoryMetric metric, const QString& name, const Words& words,
                const std::vector<SystemRow>& rows, const Direction& first, const Direction& second) {
    if (!hasTraffic(rows, first.bytes) && !hasTraffic(rows, second.bytes))
        return;
    HistoryStrip strip{.metric = metric,
                       .series = Series::s1,
                       .name = name,
                       .value = {},
                       .remark = first.word,
                       .detail = {},
                       .detailSeries = Series::s2,
                       .axis = axis(ChartAxis::Kind::open, words),
                       .lines = {}};
    // A direction without any traffic is one that nobody measured.
    if (hasTraffic(rows, first.bytes))
        strip.lines.push_back(trafficLine(Series::s1, first.name, words, rows, first.bytes));
    strip.value = amount(strip.lines.empty() ? 0 : integral(strip.lines.front()));
    double out = 0;
    if (hasTraffic(rows, second.bytes)) {
        strip.lines.push_back(trafficLine(Series::s2, second.name, words, rows, second.bytes));
        strip.lines.back().isDashed = true;
        out = integral(strip.lines.back());
    }
    strip.detail = QStringLiteral("%1 %2").arg(amount(out), second.word);
    strips.push_back(std::move(strip));
}

void addMemory(std::vector<HistoryStrip>& strips, const std::vector<SystemRow>& rows, std::uint64_t totalMemory) {
    HistoryLine used = line(
        Series::s4, QStringLiteral("Memory"), memory, rows, [](const SystemRow& row) { return row.memUsed; },
        [](const SystemRow& row) { return std::optional(row.memUsedMax); });
    if (used.points.empty())
        return;
    const auto label = [](double bytes) { return text(Formatters::bytes(bytes, 0)); };
    const auto total = static_cast<double>(totalMemory);
    ChartAxis scale = axis(ChartAxis::Kind::fixed, label, total);
    if (!(total >= peak(used))) { // the machine once had more, or tells nothing
        scale.kind = ChartAxis::Kind::open;
        scale.binary = true;
    }
    addStrip(strips, HistoryMetric::memory, scale, std::move(used));
}

void addTemperature(std::vector<HistoryStrip>& strips, const std::vector<SystemRow>& rows) {
    HistoryLine degrees = line(
        Series::s5, QStringLiteral("Temperature"), temperature, rows, [](const SystemRow& row) { return row.cpuTemp; },
        [](const SystemRow& row) { return row.cpuTempMax; });
    if (degrees.points.empty())
        degrees = line(Series::s5, QStringLiteral("GPU temperature"), temperature, rows,
                       [](const SystemRow& row) { return row.gpuTemp; });
    addStrip(strips, HistoryMetric::temperature, axis(ChartAxis::Kind::temperature, temperature), std::move(degrees));
}

QString momentTitle(const SystemRow* row, double time, Date now) {
    constexpr std::int64_t minute = 60;
    if (row == nullptr)
        return text(DateWords::moment(Date{time}, now));
    if (row->res <= minute)
        return text(DateWords::moment(row->date(), now));
    return text(DateWords::span(row->date(), row->date() + static_cast<double>(row->res), now));
}

} // namespace

std::vector<HistoryStrip> presentStrips(const std::vector<SystemRow>& rows, std::uint64_t totalMemory) {
    const ChartAxis share = axis(ChartAxis::Kind::percent, percent);
    std::vector<HistoryStrip> strips;
    addStrip(strips, HistoryMetric::cpu, share,
             line(
                 Series::s1, QStringLiteral("CPU"), percent, rows, [](const SystemRow& row) { return row.cpu; },
                 [](const SystemRow& row) { return std::optional(row.cpuMax); }));
    addMemory(strips, rows, totalMemory);
    addTraffic(strips, HistoryMetric::network, QStringLiteral("Network"), netRate, rows,
               {QStringLiteral("Network in"), &SystemRow::netIn, QStringLiteral("in")},
               {QStringLiteral("Network out"), &SystemRow::netOut, QStringLiteral("out")});
    addTraffic(strips, HistoryMetric::disk, QStringLiteral("Disk"), diskRate, rows,
               {QStringLiteral("Disk read"), &SystemRow::diskRead, QStringLiteral("read")},
               {QStringLiteral("Disk written"), &SystemRow::diskWrite, QStringLiteral("written")});
    addStrip(strips, HistoryMetric::gpu, share,
             line(
                 Series::s3, QStringLiteral("GPU"), percent, rows, [](const SystemRow& row) { return row.gpu; },
                 [](const SystemRow& row) { return row.gpuMax; }));
    addTemperature(strips, rows);
    HistoryLine watts =
        line(Series::s6, QStringLiteral("Power"), power, rows, [](const SystemRow& row) { return row.powerW; });
    if (!watts.points.empty()) {
        const QString energy = text(SumText::energy(integral(watts) / SumText::joulesPerWattHour));
        addStrip(strips, HistoryMetric::power, axis(ChartAxis::Kind::open, power), std::move(watts), energy);
    }
    HistoryLine battery = line(Series::good, QStringLiteral("Battery"), charge, rows,
                               [](const SystemRow& row) { return row.batteryPct; });
    if (!battery.points.empty()) {
        const double lowest = std::ranges::min(battery.points, {}, &HistoryPoint::value).value;
        addStrip(strips, HistoryMetric::battery, axis(ChartAxis::Kind::fixed, charge, 100), std::move(battery),
                 QStringLiteral("lowest %1").arg(charge(lowest)));
    }
    return strips;
}

const SystemRow* rowAt(const std::vector<SystemRow>& rows, double time) {
    const auto after =
        std::ranges::upper_bound(rows, time, {}, [](const SystemRow& row) { return static_cast<double>(row.bucket); });
    if (after == rows.begin())
        return nullptr;
    const SystemRow& row = *std::prev(after);
    return time < static_cast<double>(row.bucket + row.res) ? &row : nullptr;
}

std::vector<SessionSpan> sessionSpans(const std::vector<StoredSession>& stored,
                                      const std::optional<std::pair<std::string, Date>>& recording, Date now) {
    std::vector<SessionSpan> spans;
    for (const StoredSession& session : stored)
        if (session.end)
            spans.push_back({text(Text::visible(session.name)), session.start, *session.end});
    if (recording)
        spans.push_back({text(Text::visible(recording->first)), recording->second, now});
    return spans;
}

std::vector<ChartBand> sessionBands(const std::vector<SessionSpan>& sessions, double since, double until) {
    std::vector<ChartBand> bands;
    for (const SessionSpan& session : sessions)
        if (session.end.seconds > since && session.start.seconds < until)
            bands.push_back({session.start.seconds, session.end.seconds, session.name});
    return bands;
}

MomentText presentMoment(const std::vector<HistoryStrip>& strips, const SystemRow* row, double time,
                         const std::optional<std::vector<AppMoment>>& apps, const std::vector<SessionSpan>& sessions,
                         Date now) {
    MomentText moment{
        .title = momentTitle(row, time, now), .figures = {}, .note = {}, .appsTitle = {}, .apps = {}, .session = {}};
    const double from = row ? row->date().seconds : time;
    const double length = row ? static_cast<double>(row->res) : 0;
    for (const SessionSpan& session : sessions)
        if (session.start.seconds <= from + length && session.end.seconds > from)
            moment.session = QStringLiteral("Session “%1”").arg(session.name);
    if (row == nullptr) {
        moment.note = QStringLiteral("Nothing was recorded.");
        return moment;
    }
    for (const HistoryStrip& strip : strips)
        for (const HistoryLine& line : strip.lines)
            if (const HistoryPoint* point = ChartShape::pointAt(line.points, time))
                moment.figures.push_back({line.series, line.name, line.text(point->value)});
    if (apps && apps->empty())
        return moment;
    moment.appsTitle = QStringLiteral("Busiest applications");
    if (!apps)
        moment.apps.push_back({{}, QStringLiteral("…"), {}});
    else
        for (const AppMoment& app : *apps)
            moment.apps.push_back({{}, text(Text::visible(app.name)), text(Formatters::cpu(app.cpu))});
    return moment;
}

QString spoken(const MomentText& moment) {
    QString said = moment.title + QStringLiteral(".");
    const auto add = [&said](const std::vector<MomentText::Line>& lines) {
        for (const MomentText::Line& line : lines)
            said += QStringLiteral(" %1 %2.").arg(line.name, line.value);
    };
    if (!moment.note.isEmpty())
        said += QLatin1Char(' ') + moment.note;
    add(moment.figures);
    if (!moment.session.isEmpty())
        said += QStringLiteral(" %1.").arg(moment.session);
    if (!moment.appsTitle.isEmpty())
        said += QStringLiteral(" %1:").arg(moment.appsTitle);
    add(moment.apps);
    return said;
}

QString keptText(std::int64_t days, std::optional<Date> earliest, Date now) {
    QString kept = QStringLiteral("Kept on this machine for %1 %2")
                       .arg(days)
                       .arg(days == 1 ? QStringLiteral("day") : QStringLiteral("days"));
    if (earliest)
        kept += QStringLiteral(" · since %1").arg(text(DateWords::day(*earliest, now)));
    return kept;
}

QString busiestTitle(HistoryRange range) {
    return QStringLiteral("Busiest applications, %1").arg(text(label(range)));
}

std::vector<TableColumn<BusyApp>> busyColumns() {
    const auto figure = [](std::string_view id, const QString& title, int width, auto words, auto key) {
        TableColumn<BusyApp> column{.id = id, .title = title};
        column.isNumeric = true;
        column.width = width;
        column.text = [words](const BusyApp& app) { return text(words(*app.usage)); };
        column.sortKey = [key](const BusyApp& app) { return SortKey(key(*app.usage)); };
        column.sortsDescendingFirst = true;
        return column;
    };
    TableColumn<BusyApp> name{.id = "name", .title = QStringLiteral("Application")};
    name.isHideable = false;
    name.text = [](const BusyApp& app) { return text(Text::visible(app.usage->name)); };
    name.sortKey = [](const BusyApp& app) { return SortKey(std::string_view(app.usage->name)); };
    name.icon = [](const BusyApp& app, int pixels, qreal ratio) {
        return AppIcons::pixmap(app.usage->appKey, app.usage->name, app.bundlePath, pixels, ratio);
    };
    TableColumn<BusyApp> cpu = figure(
        "cpu", QStringLiteral("CPU"), 130, [](const AppUsageSummary& app) { return Formatters::cpu(app.avgCPU); },
        [](const AppUsageSummary& app) { return app.avgCPU; });
    cpu.bar = [](const BusyApp& app) { return app.share; };
    return {name,
            cpu,
            figure(
                "memory", QStringLiteral("Peak memory"), 130,
                [](const AppUsageSummary& app) { return Formatters::bytes(app.peakMemory); },
                [](const AppUsageSummary& app) { return app.peakMemory; }),
            figure(
                "energy", QStringLiteral("Energy"), 130,
                [](const AppUsageSummary& app) { return SumText::energy(app.energyJ / SumText::joulesPerWattHour); },
                [](const AppUsageSummary& app) { return app.energyJ; }),
            figure(
                "written", QStringLiteral("Written"), 130,
                [](const AppUsageSummary& app) { return SumText::amount(app.diskWrite); },
                [](const AppUsageSummary& app) { return app.diskWrite; }),
            figure(
                "active", QStringLiteral("Active for"), 130,
                [](const AppUsageSummary& app) { return Formatters::duration(app.activeMinutes * 60); },
                [](const AppUsageSummary& app) { return app.activeMinutes; })};
}

} // namespace ostrivane
