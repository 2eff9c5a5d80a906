#pragma once

#include <string>

namespace ostrivane {

struct Alert;

/// What a notification says: plain UTF-8, of a length that a desktop can show.
struct NotificationText {
    std::string title;
    std::string body;
};

/// An alert's words. Names in them come from outside: what they hide is made visible, and they cannot fill the screen.
NotificationText notificationText(const Alert& alert);

} // namespace ostrivane
