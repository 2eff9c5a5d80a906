#pragma once

#include "app/model/WayBack.hpp"

#include <array>
#include <string_view>

namespace ostrivane {

/// One thing to know ahead of the first use.
struct WelcomePoint {
    std::string_view icon;
    std::string_view title;
    std::string_view detail;
};

constexpr std::array<WelcomePoint, 3> welcomePoints(WayBack wayBack) {
    constexpr WelcomePoint local{"lock", "Local-only: no account, no telemetry.",
                                 "Everything is measured and kept on this machine. Nothing is sent anywhere."};
    constexpr WelcomePoint tray{"gauge.with.dots.needle.50percent", "In the menu bar or tray",
                                "Open the window from there for everything. Closing it leaves Ostrivane running."};
    constexpr WelcomePoint window{
        "gauge.with.dots.needle.50percent", "In the window",
        "There is no icon to come back by yet: closed for the first time, Ostrivane asks whether to keep running."};
    constexpr WelcomePoint reopened{"gauge.with.dots.needle.50percent", "In the window",
                                    "Closing it leaves Ostrivane running. Opening Ostrivane again brings it back."};
    constexpr WelcomePoint alone{"gauge.with.dots.needle.50percent", "In the window",
                                 "Nothing here could bring a closed window back: closing it ends Ostrivane."};
    constexpr WelcomePoint careful{"trash", "Nothing is removed until you confirm.",
                                   "Quitting an app, or deleting anything that was recorded, always asks first."};
    switch (wayBack) {
    case WayBack::icon:
        return {local, tray, careful};
    case WayBack::system:
        return {local, reopened, careful};
    case WayBack::furtherStart:
        return {local, window, careful};
    case WayBack::none:
        break;
    }
    return {local, alone, careful};
}

} // namespace ostrivane
