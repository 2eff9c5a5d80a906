#pragma once

#include <string_view>

namespace ostrivane {

/// What a desktop that asks its user for permission wants to be done with an alert.
enum class NotificationStep { deliver, ask, nothing };

/// By the number in which the desktop tells what the user said: 0 not asked yet, 1 no, 2 yes, 3 yes until further
/// notice. An alert that opens the question is not delivered.
NotificationStep notificationStep(long authorizationStatus);

/// Whether a program at that path was started as a packaged application ("….app"). A bare executable must not touch the
/// desktop's notifications: the system ends it.
bool isApplicationBundle(std::string_view bundlePath);

} // namespace ostrivane
