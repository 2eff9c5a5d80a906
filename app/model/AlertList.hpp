#pragma once

#include "core/history/StoredAlert.hpp"
#include "core/judgement/Alert.hpp"

#include <cstddef>
#include <vector>

/// The alerts that a person can see now, newest first.
namespace ostrivane::AlertList {

inline constexpr std::size_t most = 300;

/// Puts what fired just now in front, in its order; the oldest go where there are too many.
void add(std::vector<Alert>& alerts, const std::vector<Alert>& fired);

/// Adds what the history holds, and sorts. An alert of a kind that is not known is passed over.
void addStored(std::vector<Alert>& alerts, const std::vector<StoredAlert>& stored);

} // namespace ostrivane::AlertList
