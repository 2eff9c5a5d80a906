#include "app/model/Preferences.hpp"

namespace ostrivane {

std::string_view title(TemperatureSource source) {
    switch (source) {
    case TemperatureSource::cpu:
        return "CPU";
    case TemperatureSource::gpu:
        return "GPU";
    case TemperatureSource::hottest:
        return "Hottest sensor";
    }
    return {};
}

std::string_view title(MenuBarLayout layout) {
    switch (layout) {
    case MenuBarLayout::iconOnly:
        return "Icon only";
    case MenuBarLayout::combined:
        return "One item, several values";
    case MenuBarLayout::separate:
        return "One item per metric";
    }
    return {};
}

} // namespace ostrivane
