#include "app/model/NotificationServer.hpp"

#include "app/model/NotificationText.hpp"
#include "core/judgement/Alert.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace ostrivane {

namespace {

std::uint8_t urgencyOf(AlertSeverity severity) {
    switch (severity) {
    case AlertSeverity::info:
        return 0;
    case AlertSeverity::warning:
        return 1;
    case AlertSeverity::critical:
        return 2;
    }
    return 1;
}

std::string escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text)
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        default:
            out += c;
        }
    return out;
}

auto isOf(const Alert& alert) {
    return [&alert](const auto& shown) { return shown.kind == alert.kind && shown.subject == alert.subject; };
}

} // namespace

NotificationServer::NotificationServer(std::string uniqueName, bool hasMarkup)
    : name(std::move(uniqueName)), takesMarkup(hasMarkup) {}

DesktopNotification NotificationServer::notificationOf(const Alert& alert) const {
    auto [title, body] = notificationText(alert);
    const auto last = std::ranges::find_if(remembered, isOf(alert));
    // Markup is for the body alone: a summary is plain to every server.
    return {.replaces = last == remembered.end() ? 0 : last->number,
            .summary = std::move(title),
            .body = takesMarkup ? escaped(body) : std::move(body),
            .urgency = urgencyOf(alert.severity)};
}

void NotificationServer::shown(const Alert& alert, std::uint32_t number) {
    std::erase_if(remembered, isOf(alert));
    if (remembered.size() == mostRemembered)
        remembered.erase(remembered.begin());
    remembered.push_back({alert.kind, alert.subject, number});
}

} // namespace ostrivane
