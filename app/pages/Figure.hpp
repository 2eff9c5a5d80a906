#pragma once

#include "app/model/AppState.hpp"
#include "app/widgets/StatGrid.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <QString>

#include <string_view>

namespace ostrivane {

/// Stands for every figure until the machine has been read twice.
inline QString pendingFigure() {
    return QStringLiteral("…");
}

inline QString figure(const AppState& state, std::string_view formatted) {
    return state.hasFirstSample ? text(formatted) : pendingFigure();
}

/// A line with a figure; lighter where it only says that there is none.
inline KeyValue figureLine(const QString& key, const QString& value) {
    const bool isAbsent = value == text(Formatters::dash) || value == text(Formatters::unavailable);
    return {key, value, isAbsent ? Tone::text2 : Tone::text};
}

} // namespace ostrivane
