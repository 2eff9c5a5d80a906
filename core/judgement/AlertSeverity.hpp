#pragma once

#include "core/model/RawValue.hpp"

#include <array>

namespace ostrivane {

/// How much an alert matters. Ordered by gravity.
enum class AlertSeverity { info, warning, critical };
constexpr std::array<RawText<AlertSeverity>, 3> rawTexts(EnumTag<AlertSeverity>) {
    return {
        {{AlertSeverity::info, "info"}, {AlertSeverity::warning, "warning"}, {AlertSeverity::critical, "critical"}}};
}

} // namespace ostrivane
