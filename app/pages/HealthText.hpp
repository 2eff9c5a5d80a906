#pragma once

#include "app/widgets/EvidenceList.hpp"
#include "app/widgets/Theme.hpp"
#include "core/judgement/AlertRule.hpp"
#include "core/model/Page.hpp"

#include <QString>
#include <QStringList>

#include <span>
#include <string>
#include <vector>

namespace ostrivane {

struct AppState;
struct Date;
struct PlatformWords;

/// One side of the machine's condition, with why it was judged so.
struct HealthCard {
    QString name;
    std::string symbol;
    Condition condition = Condition::unknown;
    QString label;
    QStringList evidence;
    QString note;             ///< in its place where there is none
    Page page = Page::health; ///< that explains it
    QString link;             ///< "Open CPU"

    friend bool operator==(const HealthCard&, const HealthCard&) = default;
};

struct HealthText {
    Condition condition = Condition::unknown;
    QString summary;
    QString count; ///< "4 of 6 categories are normal. …"
    std::vector<HealthCard> cards;

    friend bool operator==(const HealthText&, const HealthText&) = default;
};

/// Without cards until the machine was measured and judged.
HealthText presentHealth(const AppState& state, const PlatformWords& words);

/// The alerts of the last 24 hours.
struct RecentAlerts {
    std::vector<EvidenceRow> rows; ///< newest first, of many the latest 12
    QString note;                  ///< of many: "12 of 31"
};
RecentAlerts presentRecentAlerts(const AppState& state, Date now);

/// "13 rules watch this machine, 9 may notify you."
QString rulesText(std::span<const AlertRule> rules, bool notificationsEnabled);

} // namespace ostrivane
