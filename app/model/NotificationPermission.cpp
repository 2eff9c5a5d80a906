#include "app/model/NotificationPermission.hpp"

#include "core/attribution/PathText.hpp"

namespace ostrivane {

NotificationStep notificationStep(long authorizationStatus) {
    constexpr long notDetermined = 0;
    constexpr long authorized = 2;
    constexpr long provisional = 3;
    switch (authorizationStatus) {
    case notDetermined:
        return NotificationStep::ask;
    case authorized:
    case provisional:
        return NotificationStep::deliver;
    default:
        return NotificationStep::nothing;
    }
}

bool isApplicationBundle(std::string_view bundlePath) {
    constexpr std::string_view extension = ".app";
    const std::string_view name = PathText::lastComponent(bundlePath);
    return name.size() > extension.size() && name.ends_with(extension);
}

} // namespace ostrivane
