#include "core/judgement/AlertRun.hpp"

#include <algorithm>

namespace ostrivane {

AlertRun::AlertRun(const AlertRule& itsRule, const AlertScene& itsScene, AlertBook& itsBook, std::vector<Alert>& all)
    : rule(itsRule), scene(itsScene), book(itsBook), alerts(all), first(all.size()) {}

Alert* AlertRun::fire(std::string_view subject, AlertSeverity severity) {
    if (!book.enter(rule, subject, scene.now()))
        return nullptr;
    Alert& alert = alerts.emplace_back();
    alert.id = book.newID();
    alert.date = scene.snapshot.timestamp;
    alert.kind = rule.kind;
    alert.severity = severity;
    alert.subject = subject;
    alert.notify = rule.notify;
    return &alert;
}

void AlertRun::sortBySubject() {
    std::sort(alerts.begin() + static_cast<std::ptrdiff_t>(first), alerts.end(),
              [](const Alert& a, const Alert& b) { return a.subject < b.subject; });
}

} // namespace ostrivane
