#include "core/sampling/platform/GraphicsDrivers.hpp"

#include <algorithm>
#include <array>

namespace ostrivane::GraphicsDrivers {

namespace {

constexpr std::array<std::string_view, 23> displayDrivers{
    "",      "virtio_gpu",  "virtio-pci", "vmwgfx",    "vboxvideo",          "qxl",       "bochs-drm", "cirrus",
    "ast",   "cirrus-qemu", "mgag200",    "hibmc-drm", "hyperv_drm",         "simpledrm", "efidrm",    "vesadrm",
    "ofdrm", "vkms",        "vgem",       "udl",       "simple-framebuffer", "evdi",      "gm12u320",
};

} // namespace

bool onlyDisplays(std::string_view driver) {
    return std::ranges::find(displayDrivers, driver) != displayDrivers.end();
}

std::optional<std::string> makersName(std::uint16_t vendor) {
    switch (vendor) {
    case 0x1002:
        return "AMD GPU";
    case 0x8086:
        return "Intel GPU";
    case 0x10de:
        return "NVIDIA GPU";
    default:
        return std::nullopt;
    }
}

} // namespace ostrivane::GraphicsDrivers
