#include "core/sampling/platform/linux/PCINames.hpp"

#include "core/sampling/platform/GraphicsDrivers.hpp"
#include "core/sampling/platform/PCIIDs.hpp"

#include <array>
#include <cstdint>

namespace ostrivane {

namespace {

constexpr std::array<const char*, 2> lists{"usr/share/misc/pci.ids", "usr/share/hwdata/pci.ids"};

std::optional<std::uint16_t> id(const RootFolder& root, const std::string& path) {
    const auto text = root.read(path);
    return text ? PCIIDs::id(*text) : std::nullopt;
}

} // namespace

std::optional<std::string> PCINames::name(const std::string& folder) const {
    const auto vendor = id(root, folder + "/vendor");
    const auto device = id(root, folder + "/device");
    if (!vendor || !device)
        return std::nullopt;
    for (const char* list : lists)
        if (const auto text = root.read(list))
            if (auto name = PCIIDs::deviceName(*text, *vendor, *device))
                return name;
    return GraphicsDrivers::makersName(*vendor);
}

} // namespace ostrivane
