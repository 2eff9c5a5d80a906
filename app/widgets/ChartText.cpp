#include "app/widgets/ChartText.hpp"

#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <QDateTime>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace ostrivane::ChartText {

namespace {

QString local(double time, const QString& format) {
    // The program's words are English everywhere, those for months too.
    return QLocale::c().toString(QDateTime::fromSecsSinceEpoch(static_cast<qint64>(std::floor(time))), format);
}

} // namespace

std::optional<Figures> figures(std::span<const TimedValue> points, double since, double until) {
    std::optional<Figures> found;
    for (const TimedValue& point : points) {
        if (point.time < since || point.time > until)
            continue;
        if (!found)
            found = Figures{point.value, point.value, point.value};
        found->now = point.value;
        found->lowest = std::min(found->lowest, point.value);
        found->highest = std::max(found->highest, point.value);
    }
    return found;
}

QString span(double seconds) {
    const auto told = [](double count, const QString& one) {
        const qlonglong whole = std::llround(count);
        return whole == 1 ? QStringLiteral("last %1").arg(one) : QStringLiteral("last %1 %2s").arg(whole).arg(one);
    };
    if (seconds < 60)
        return told(seconds, QStringLiteral("second"));
    if (seconds <= 3600)
        return seconds == 3600 ? told(1, QStringLiteral("hour")) : told(seconds / 60, QStringLiteral("minute"));
    if (seconds < 2 * 86400)
        return told(seconds / 3600, QStringLiteral("hour"));
    return told(seconds / 86400, QStringLiteral("day"));
}

QString sentence(const QString& name, const QString& span, std::span<const Told> lines,
                 const std::optional<Figures>& sum) {
    QStringList parts;
    const auto tell = [&](const QString& line, const std::optional<Figures>& seen, const auto& words) {
        if (!seen || !words)
            return;
        // Texts are put in by joining: a name may hold what an argument mark looks like.
        const QString part = QStringLiteral("now ") + words(seen->now) + QStringLiteral(", lowest ") +
                             words(seen->lowest) + QStringLiteral(", highest ") + words(seen->highest);
        parts << (line.isEmpty() ? part : line + QLatin1Char(' ') + part);
    };
    const bool areSeveral = lines.size() > 1;
    if (areSeveral)
        tell({}, sum, lines.back().text);
    for (const Told& line : lines)
        tell(areSeveral ? line.name : QString(), line.figures, line.text);
    if (parts.isEmpty())
        parts << QStringLiteral("no data");
    return name + QStringLiteral(", ") + span + QStringLiteral(": ") + parts.join(QStringLiteral("; ")) +
           QLatin1Char('.');
}

QString none() {
    return text(Formatters::dash);
}

QString clockWithSeconds(double time) {
    return local(time, QStringLiteral("HH:mm:ss"));
}

QString clock(double time) {
    return local(time, QStringLiteral("HH:mm"));
}

QString dayOfMonth(double time) {
    return local(time, QStringLiteral("d MMM"));
}

QString dayAndClock(double time) {
    return local(time, QStringLiteral("d MMM, HH:mm"));
}

} // namespace ostrivane::ChartText
