#pragma once

#include <cmath>
#include <optional>

/// Arithmetic over figures from outside, one of which may be no number: that one counts as absent.
namespace ostrivane::Figures {

/// Adds `amount`, unless the sum would then be no number or infinite.
inline void grow(double& sum, double amount) {
    if (const double grown = sum + amount; std::isfinite(grown))
        sum = grown;
}

/// The item whose figure is the largest, of several the first; null when no item has one.
/// @param figure  gives the figure of an item, or an absent optional
template <class Items, class Figure>
const typename Items::value_type* largest(const Items& items, Figure figure) {
    const typename Items::value_type* found = nullptr;
    double most = 0;
    for (const auto& item : items) {
        const std::optional<double> value = figure(item);
        if (!value || !std::isfinite(*value) || (found && *value <= most))
            continue;
        found = &item;
        most = *value;
    }
    return found;
}

} // namespace ostrivane::Figures
