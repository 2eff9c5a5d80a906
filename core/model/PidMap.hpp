#pragma once

#include <boost/unordered/unordered_flat_map.hpp>

#include <cstdint>

namespace ostrivane {

/// What is known about each process, by its id. In no defined order; `clear` keeps the room for the next tick.
template <class T>
using PidMap = boost::unordered_flat_map<std::int32_t, T>;

} // namespace ostrivane
