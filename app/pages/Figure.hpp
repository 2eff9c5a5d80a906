#pragma once

#include "app/model/AppState.hpp"
#include "app/widgets/Strings.hpp"

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

} // namespace ostrivane
