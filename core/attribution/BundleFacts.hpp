#pragma once

#include "core/model/Described.hpp"

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What an application bundle says about itself.
struct BundleFacts {
    std::vector<std::string> names; ///< those that it has, best first
    std::optional<std::string> bundleID;
    std::string fileName; ///< what a short name is measured against; empty: the name of the bundle's file

    friend bool operator==(const BundleFacts&, const BundleFacts&) = default;
};
BOOST_DESCRIBE_STRUCT(BundleFacts, (), (names, bundleID, fileName))
static_assert(describesEveryMember<BundleFacts>);

} // namespace ostrivane
