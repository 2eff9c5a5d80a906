#include "core/model/DiskSnapshot.hpp"

#include <algorithm>

namespace ostrivane {

std::uint64_t VolumeInfo::used() const {
    return available > total ? 0 : total - available;
}

double VolumeInfo::usedFraction() const {
    return total == 0 ? 0 : static_cast<double>(used()) / static_cast<double>(total);
}

std::optional<VolumeInfo> DiskSnapshot::root() const {
    const auto found = std::ranges::find_if(volumes, &VolumeInfo::isRoot);
    return found == volumes.end() ? std::nullopt : std::optional(*found);
}

} // namespace ostrivane
