#include "cli/JudgementText.hpp"

#include "cli/MachineText.hpp"
#include "cli/Wording.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <string_view>

namespace ostrivane::cli {

namespace {

constexpr std::string_view evidenceMargin = "     "; // below the word behind a mark
constexpr std::string_view alertMargin = "    ";

/// How a finding is told apart from others.
struct Mark {
    std::string_view sign;
    std::string_view word;
    Style style;
};

Mark markOf(HealthCategory::Status status) {
    switch (status) {
    case HealthCategory::Status::good:
        return {"[ok]", "good", Style::good};
    case HealthCategory::Status::elevated:
        return {"[!]", "elevated", Style::warning};
    case HealthCategory::Status::high:
        return {"[!!]", "high", Style::critical};
    case HealthCategory::Status::unknown:
        break;
    }
    return {"[?]", "unknown", Style::dim};
}

Mark markOf(Insight::Level level) {
    switch (level) {
    case Insight::Level::info:
        break;
    case Insight::Level::notice:
        return {"[!]", "notice", Style::warning};
    case Insight::Level::warning:
        return {"[!!]", "warning", Style::critical};
    }
    return {"[i]", "info", Style::accent};
}

Style styleOf(std::string_view severity) {
    switch (fromRawValue<AlertSeverity>(severity).value_or(AlertSeverity::info)) {
    case AlertSeverity::info:
        break;
    case AlertSeverity::warning:
        return Style::warning;
    case AlertSeverity::critical:
        return Style::critical;
    }
    return Style::accent;
}

void add(std::vector<StyledLine>& lines, StyledLine line, std::optional<int> width) {
    lines.push_back(width ? fitted(line, *width) : std::move(line));
}

void addWrapped(std::vector<StyledLine>& lines, std::string_view text, std::string_view margin,
                std::optional<int> width, Style style = Style::plain) {
    for (std::string& line : wrapped(Text::visible(text), margin, width))
        lines.push_back({{std::move(line), style}});
}

/// "[!!] high      MESSAGE", the message broken into lines where it does not fit.
void addMarked(std::vector<StyledLine>& lines, const Mark& mark, const std::string& message, std::optional<int> width) {
    const std::string head = fmt::format("{:<4} {:<8}  ", mark.sign, mark.word);
    const auto room = width ? std::optional(*width - static_cast<int>(head.size())) : std::nullopt;
    if (room && *room < static_cast<int>(head.size())) { // a column of single words is no text
        add(lines, {{head, mark.style}}, width);
        return addWrapped(lines, message, evidenceMargin, width, Style::bold);
    }
    bool isFirst = true;
    for (std::string& line : wrapped(Text::visible(message), "", room)) {
        lines.push_back({{isFirst ? head : std::string(head.size(), ' '), mark.style}, {std::move(line), Style::bold}});
        isFirst = false;
    }
}

void addAlert(std::vector<StyledLine>& lines, const StoredAlert& alert, std::optional<int> width) {
    add(lines,
        {{MachineText::time(alert.date) + "  "},
         {fmt::format("{:<8}  ", Text::visible(alert.severity)), styleOf(alert.severity)},
         {Text::visible(alert.title), Style::bold}},
        width);
    addWrapped(lines, alert.body, alertMargin, width);
    if (alert.subject)
        addWrapped(lines, "About: " + *alert.subject, alertMargin, width, Style::dim);
}

std::vector<StyledLine> storedAlertLines(const std::vector<StoredAlert>& alerts, std::optional<int> width) {
    std::vector<StyledLine> lines;
    for (const StoredAlert& alert : alerts)
        addAlert(lines, alert, width);
    if (alerts.empty())
        add(lines, {{"There are no alerts."}}, width);
    return lines;
}

std::string textOf(const std::vector<StyledLine>& lines) {
    std::vector<std::string> texts;
    texts.reserve(lines.size());
    for (const StyledLine& line : lines)
        texts.push_back(plainText(line));
    return joined(texts);
}

} // namespace

std::vector<StyledLine> healthLines(const std::vector<HealthCategory>& health, std::optional<int> width) {
    std::vector<StyledLine> lines;
    for (const HealthCategory& category : health) {
        addMarked(lines, markOf(category.status), category.name + ": " + category.label, width);
        for (const std::string& sentence : category.evidence)
            addWrapped(lines, sentence, evidenceMargin, width);
    }
    return lines;
}

std::vector<StyledLine> insightLines(const std::vector<Insight>& insights, std::optional<int> width) {
    std::vector<StyledLine> lines;
    for (const Insight& insight : insights) {
        addMarked(lines, markOf(insight.level), insight.title, width);
        addWrapped(lines, insight.evidence, evidenceMargin, width);
    }
    if (insights.empty())
        add(lines, {{"Nothing stands out right now."}}, width);
    return lines;
}

std::vector<StyledLine> alertLines(const std::vector<Alert>& alerts, std::optional<int> width) {
    std::vector<StoredAlert> asStored;
    asStored.reserve(alerts.size());
    for (const Alert& alert : alerts)
        asStored.push_back({.date = alert.date,
                            .rule = std::string(rawValue(alert.kind)),
                            .severity = std::string(rawValue(alert.severity)),
                            .title = alert.title,
                            .body = alert.body,
                            .subject = alert.subject});
    return storedAlertLines(asStored, width);
}

std::string healthText(const std::string& summary, const std::vector<HealthCategory>& health,
                       std::optional<int> width) {
    return joined(wrapped(Text::visible(summary), "", width)) + "\n" + textOf(healthLines(health, width));
}

std::string insightsText(const std::vector<Insight>& insights, std::optional<int> width) {
    return textOf(insightLines(insights, width));
}

std::string alertsText(const std::vector<StoredAlert>& alerts, std::optional<int> width) {
    return textOf(storedAlertLines(alerts, width));
}

} // namespace ostrivane::cli
