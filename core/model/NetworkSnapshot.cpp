#include "core/model/NetworkSnapshot.hpp"

#include <algorithm>

namespace ostrivane {

std::optional<InterfaceStats> NetworkSnapshot::primary() const {
    const auto found = std::ranges::find_if(interfaces, &InterfaceStats::isPrimary);
    return found == interfaces.end() ? std::nullopt : std::optional(*found);
}

} // namespace ostrivane
