#include "app/pages/SessionsText.hpp"

#include "app/model/DateWords.hpp"
#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Strings.hpp"
#include "core/history/WholeSeconds.hpp"
#include "core/judgement/SessionSummaryJSON.hpp"
#include "core/judgement/SessionWords.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/SumText.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <QPixmap>

#include <cmath>
#include <utility>

namespace ostrivane {

namespace {

QString shown(std::string_view foreign) {
    return text(Text::visible(foreign));
}

QString duration(Date start, Date end) {
    return text(Formatters::duration(end - start));
}

/// "+1.02 GB"; a sign for a decrease that is as wide as the other.
std::string change(double bytes) {
    return (bytes < 0 ? "\u2212" : "+") + Formatters::bytes(std::abs(bytes));
}

std::string percent(double fraction) {
    return Formatters::percent(fraction);
}
std::string memory(double bytes) {
    return Formatters::bytes(bytes);
}
std::string temperature(double celsius) {
    return Formatters::temperature(celsius);
}
std::string power(double watts) {
    return Formatters::power(watts);
}

Stat absent(const QString& caption) {
    return {.caption = caption, .value = text(Formatters::dash), .remark = {}, .tone = Tone::text2};
}

using Words = std::string (*)(double);

Stat stat(const QString& caption, const std::optional<SessionSummary::Stat>& measured, Words words) {
    if (!measured)
        return absent(caption);
    return {.caption = caption,
            .value = text(words(measured->average)),
            .remark = QStringLiteral("peak %1").arg(text(words(measured->peak)))};
}

Stat moved(const QString& caption, double bytes) {
    return bytes > 0 ? Stat{.caption = caption, .value = text(SumText::amount(bytes))} : absent(caption);
}

Stat battery(const SessionSummary& summary) {
    const QString caption = QStringLiteral("Battery");
    if (!summary.batteryStart || !summary.batteryEnd)
        return absent(caption);
    return {.caption = caption,
            .value = QStringLiteral("%1%").arg(*summary.batteryStart),
            .remark = QStringLiteral("to %1%").arg(*summary.batteryEnd)};
}

std::vector<Stat> stats(const SessionSummary& summary) {
    return {
        stat(QStringLiteral("CPU"), summary.cpu, percent),
        stat(QStringLiteral("Memory"), summary.memoryUsed, memory),
        stat(QStringLiteral("GPU"), summary.gpu, percent),
        stat(QStringLiteral("CPU temperature"), summary.cpuTemperature, temperature),
        stat(QStringLiteral("System power"), summary.systemPower, power),
        {.caption = QStringLiteral("Swap"), .value = text(memory(summary.swapPeak)), .remark = QStringLiteral("peak")},
        {.caption = QStringLiteral("Memory pressure"),
         .value = shown(summary.memoryPressurePeak),
         .remark = QStringLiteral("at worst")},
        battery(summary),
        moved(QStringLiteral("Disk read"), summary.diskRead),
        moved(QStringLiteral("Disk written"), summary.diskWrite),
        moved(QStringLiteral("Received"), summary.netIn),
        moved(QStringLiteral("Sent"), summary.netOut)};
}

QString names(const std::vector<std::string>& list) {
    return shown(fmt::format("{}", fmt::join(list, ", ")));
}

SessionText head(std::string_view name, const QString& when) {
    return {.name = shown(name), .when = when, .problem = {}, .stats = {}, .opened = {}, .quit = {}, .summary = {}};
}

SessionText withoutFigures(const StoredSession& session, const QString& when, std::string_view why) {
    SessionText made = head(session.name, when);
    made.problem = text(why);
    return made;
}

QString spanText(Date start, Date end, Date now) {
    return QStringLiteral("%1 · %2").arg(text(DateWords::span(start, end, now)), duration(start, end));
}

/// A column of figures.
template <class Line, class Figure>
TableColumn<const Line*> figure(std::string_view id, const QString& title, int width, Figure Line::*member,
                                Words words) {
    TableColumn<const Line*> column{.id = id, .title = title};
    column.isNumeric = true;
    column.width = width;
    column.text = [member, words](const Line* const& line) { return text(words(line->*member)); };
    column.sortKey = [member](const Line* const& line) { return SortKey(line->*member); };
    column.sortsDescendingFirst = true;
    return column;
}

template <class Line>
TableColumn<const Line*> words(std::string_view id, const QString& title, std::string Line::*member) {
    TableColumn<const Line*> column{.id = id, .title = title};
    column.text = [member](const Line* const& line) { return shown(line->*member); };
    column.sortKey = [member](const Line* const& line) { return SortKey(std::string_view(line->*member)); };
    return column;
}

} // namespace

SessionRow presentSessionRow(const StoredSession& session, Date now) {
    return {.name = shown(session.name),
            .when = text(DateWords::moment(session.start, now)),
            .duration = session.end && session.summaryJSON ? duration(session.start, *session.end)
                                                           : QStringLiteral("Not finished")};
}

QString menuText(const SessionRow& row) {
    return QStringLiteral("%1 · %2 · %3").arg(row.name, row.when, row.duration);
}

RecordingText presentRecording(const SessionSummary& soFar) {
    RecordingText made{.title = QStringLiteral("Recording “%1”").arg(shown(soFar.name)),
                       .figures = QStringLiteral("for %1").arg(duration(soFar.start, soFar.end))};
    if (soFar.samples == 0)
        return made;
    made.figures += text(fmt::format(" · CPU {} average, {} peak · {} memory", percent(soFar.cpu.average),
                                     percent(soFar.cpu.peak), memory(soFar.memoryUsed.average)));
    if (soFar.systemPower)
        made.figures += text(fmt::format(" · {} power", power(soFar.systemPower->average)));
    return made;
}

SessionText presentSummary(const SessionSummary& summary, Date now) {
    SessionText made = head(summary.name, spanText(summary.start, summary.end, now));
    made.when += text(fmt::format(" · {} {}", summary.samples, summary.samples == 1 ? "sample" : "samples"));
    if (summary.samples == 0) {
        made.problem = text(SessionWords::tooShort);
        return made;
    }
    made.stats = stats(summary);
    made.opened = names(summary.launchedApps);
    made.quit = names(summary.quitApps);
    made.summary = summary;
    return made;
}

SessionText presentSession(const StoredSession& session, Date now) {
    if (session.summaryJSON)
        if (const auto summary = readSessionSummary(*session.summaryJSON))
            return presentSummary(*summary, now);
    if (!session.end)
        return withoutFigures(session, QStringLiteral("Since %1").arg(text(DateWords::moment(session.start, now))),
                              SessionWords::endless);
    return withoutFigures(session, spanText(session.start, *session.end, now), SessionWords::unreadable);
}

bool isOf(const StoredSession& session, const std::string& name, Date start) {
    return session.name == name && wholeSeconds(session.start) == wholeSeconds(start);
}

MessageText deleteQuestion(const QString& name) {
    constexpr int longest = 60; // a name may be of any length
    const QString brief = name.size() > longest ? name.left(longest) + QStringLiteral("…") : name;
    return {.condition = Condition::elevated,
            .heading = QStringLiteral("Delete “%1”?").arg(brief),
            .text = QStringLiteral("Its summary is removed for good."),
            .confirm = QStringLiteral("Delete"),
            .kind = ButtonKind::confirming,
            .cancel = QStringLiteral("Cancel")};
}

std::vector<TableColumn<const SessionSummary::AppLine*>>
sessionAppColumns(std::function<std::optional<std::string>(const std::string& key)> bundlePath) {
    using Line = SessionSummary::AppLine;
    auto name = words("name", QStringLiteral("Application"), &Line::name);
    name.isHideable = false;
    name.icon = [bundlePath = std::move(bundlePath)](const Line* const& line, int pixels, qreal ratio) {
        return AppIcons::pixmap(line->key, line->name, bundlePath(line->key), pixels, ratio);
    };
    const Words energy = [](double joules) { return SumText::energy(joules / SumText::joulesPerWattHour); };
    return {name,
            figure("cpu", QStringLiteral("CPU"), 64, &Line::avgCPU, Formatters::cpu),
            figure("memory", QStringLiteral("Peak memory"), 112, &Line::peakMemory, memory),
            figure("change", QStringLiteral("Change"), 90, &Line::memoryChange, change),
            figure("energy", QStringLiteral("Energy"), 78, &Line::energyJ, energy),
            figure("written", QStringLiteral("Written"), 86, &Line::diskWrite, SumText::amount),
            figure("network", QStringLiteral("Network"), 86, &Line::network, SumText::amount),
            figure("present", QStringLiteral("Present"), 76, &Line::presentFraction, percent)};
}

std::vector<TableColumn<const SessionSummary::ProcessLine*>> sessionProcessColumns() {
    using Line = SessionSummary::ProcessLine;
    auto name = words("name", QStringLiteral("Process"), &Line::name);
    name.isHideable = false;
    name.toolTip = [](const Line* const& line) { return QStringLiteral("Process %1").arg(line->pid); };
    auto app = words("app", QStringLiteral("Application"), &Line::app);
    app.width = 200;
    app.tone = [](const Line* const&) { return Tone::text2; };
    return {name, app, figure("cpu", QStringLiteral("CPU time"), 96, &Line::cpuSeconds, SumText::processorTime),
            figure("memory", QStringLiteral("Peak memory"), 110, &Line::peakMemory, memory)};
}

} // namespace ostrivane
