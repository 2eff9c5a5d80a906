#pragma once

#include "core/model/Date.hpp"

/// Time as the person at this machine lives it.
namespace ostrivane::Calendar {

/// The midnight that the day of `date` began with, by the local clock, the first where there are two; `date` itself
/// where no calendar reaches.
Date startOfDay(Date date);

/// The wall clock.
Date now();

} // namespace ostrivane::Calendar
