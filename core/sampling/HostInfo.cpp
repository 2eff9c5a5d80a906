#include "core/sampling/HostInfo.hpp"

#include <array>
#include <utility>

namespace ostrivane {

namespace {

/// In this order: the last prefix would take the others in.
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> families{{{"MacBookPro", "MacBook Pro"},
                                                                                 {"MacBookAir", "MacBook Air"},
                                                                                 {"Macmini", "Mac mini"},
                                                                                 {"iMac", "iMac"},
                                                                                 {"MacPro", "Mac Pro"},
                                                                                 {"Mac", "Mac"}}};

} // namespace

std::string marketingName(std::string_view productName, std::string_view modelIdentifier) {
    if (!productName.empty())
        return std::string(productName);
    for (const auto& [prefix, name] : families)
        if (modelIdentifier.starts_with(prefix))
            return std::string(name);
    return std::string(modelIdentifier);
}

} // namespace ostrivane
