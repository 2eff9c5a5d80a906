#pragma once

#include "core/judgement/AlertKind.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

struct Alert;

/// What a server of org.freedesktop.Notifications is told.
struct DesktopNotification {
    std::uint32_t replaces = 0; ///< the number of the one whose place it takes; 0 for none
    std::string summary;
    std::string body;
    std::uint8_t urgency = 0; ///< 0 low, 1 normal, 2 critical
};

/// One server of notifications as this program knows it. Numbers mean something to the server that gave them alone:
/// another one is another object.
class NotificationServer {
public:
    static constexpr std::size_t mostRemembered = 64;

    NotificationServer(std::string uniqueName, bool hasMarkup);

    const std::string& uniqueName() const { return name; }

    /// In the place of the last one of the same kind and subject.
    DesktopNotification notificationOf(const Alert& alert) const;

    /// The server shows the alert under that number.
    void shown(const Alert& alert, std::uint32_t number);

private:
    struct Shown {
        AlertKind kind;
        std::optional<std::string> subject;
        std::uint32_t number;
    };

    std::string name;
    bool takesMarkup;              ///< in bodies
    std::vector<Shown> remembered; ///< the latest last
};

} // namespace ostrivane
