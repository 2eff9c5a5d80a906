#pragma once

#include "core/model/Date.hpp"

/// Days as the person at this machine lives them.
namespace ostrivane::Calendar {

/// The midnight that the day of `date` began with, by the local clock; `date` itself where no calendar reaches.
Date startOfDay(Date date);

} // namespace ostrivane::Calendar
