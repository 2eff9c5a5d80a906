#pragma once

#include <array>
#include <string_view>

namespace ostrivane {

/// One thing to know ahead of the first use.
struct WelcomePoint {
    std::string_view icon;
    std::string_view title;
    std::string_view detail;
};

/// @param hasTray  whether the program goes on without its window, behind an icon
/// @param isMac    whether the system keeps a program without a window, and opens it again
constexpr std::array<WelcomePoint, 3> welcomePoints(bool hasTray, bool isMac) {
    constexpr WelcomePoint local{"lock", "Local-only: no account, no telemetry.",
                                 "Everything is measured and kept on this machine. Nothing is sent anywhere."};
    constexpr WelcomePoint tray{"gauge.with.dots.needle.50percent", "In the menu bar or tray",
                                "Open the window from there for everything. Closing it leaves Ostrivane running."};
    constexpr WelcomePoint window{
        "gauge.with.dots.needle.50percent", "In the window",
        "There is no icon to come back by yet: closed for the first time, Ostrivane asks whether to keep running."};
    constexpr WelcomePoint reopened{"gauge.with.dots.needle.50percent", "In the window",
                                    "Closing it leaves Ostrivane running. Opening Ostrivane again brings it back."};
    constexpr WelcomePoint careful{"trash", "Nothing is removed until you confirm.",
                                   "Quitting an app, or deleting anything that was recorded, always asks first."};
    return {local, hasTray ? tray : isMac ? reopened : window, careful};
}

} // namespace ostrivane
