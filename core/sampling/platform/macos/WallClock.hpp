#pragma once

#include "core/model/Date.hpp"

#include <chrono>

namespace ostrivane {

inline Date wallClock() {
    return Date{std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count()};
}

} // namespace ostrivane
