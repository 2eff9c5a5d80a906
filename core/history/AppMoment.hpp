#pragma once

#include "core/model/Described.hpp"

#include <string>

namespace ostrivane {

/// One application in the bucket of time that holds an instant.
struct AppMoment {
    std::string appKey;
    std::string name; ///< the key where no name is known
    double cpu = 0;   ///< mean, cores
    double mem = 0;   ///< mean, bytes

    friend bool operator==(const AppMoment&, const AppMoment&) = default;
};
BOOST_DESCRIBE_STRUCT(AppMoment, (), (appKey, name, cpu, mem))
static_assert(describesEveryMember<AppMoment>);

} // namespace ostrivane
