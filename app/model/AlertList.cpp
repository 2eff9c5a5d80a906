#include "app/model/AlertList.hpp"

#include <boost/uuid/random_generator.hpp>

#include <algorithm>

namespace ostrivane::AlertList {

namespace {

void keepNewest(std::vector<Alert>& alerts) {
    if (alerts.size() > most)
        alerts.resize(most);
}

} // namespace

void add(std::vector<Alert>& alerts, const std::vector<Alert>& fired) {
    alerts.insert(alerts.begin(), fired.begin(), fired.end());
    keepNewest(alerts);
}

void addStored(std::vector<Alert>& alerts, const std::vector<StoredAlert>& stored) {
    boost::uuids::random_generator newID;
    for (const StoredAlert& row : stored) {
        const auto kind = fromRawValue<AlertKind>(row.rule);
        if (!kind)
            continue;
        alerts.push_back({.id = newID(),
                          .date = row.date,
                          .kind = *kind,
                          .severity = fromRawValue<AlertSeverity>(row.severity).value_or(AlertSeverity::info),
                          .title = row.title,
                          .body = row.body,
                          .subject = row.subject,
                          .notify = false});
    }
    std::ranges::stable_sort(alerts, std::ranges::greater(), &Alert::date);
    keepNewest(alerts);
}

} // namespace ostrivane::AlertList
