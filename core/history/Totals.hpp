#pragma once

#include "core/model/Described.hpp"

namespace ostrivane {

/// What the machine moved and used over a period.
struct Totals {
    double diskRead = 0; ///< bytes
    double diskWrite = 0;
    double netIn = 0;
    double netOut = 0;
    double energyWh = 0;

    friend bool operator==(const Totals&, const Totals&) = default;
};
BOOST_DESCRIBE_STRUCT(Totals, (), (diskRead, diskWrite, netIn, netOut, energyWh))
static_assert(describesEveryMember<Totals>);

} // namespace ostrivane
