#pragma once

#include "core/model/Page.hpp"

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What the program was started with.
struct LaunchArguments {
    bool isLogin = false;      ///< started with the session: no window, no welcome
    bool isBackground = false; ///< no window
    std::optional<Page> page;  ///< to select and show; an unknown name is none
    std::string replay;        ///< file of a recording that is shown in place of this machine
    std::string screenshots;   ///< folder for pictures of every page; then no window is shown
    int width = 1240;          ///< of those pictures
    int height = 800;
    bool wantsHelp = false;
    bool wantsVersion = false;
    std::optional<std::string> problem; ///< what cannot be understood, in a sentence

    friend bool operator==(const LaunchArguments&, const LaunchArguments&) = default;
};

/// @param arguments  without the program's name
LaunchArguments parseLaunchArguments(const std::vector<std::string>& arguments);

/// What "--help" prints.
std::string launchHelp();

/// What a launch shows.
struct LaunchDecision {
    bool showsWindow = false;
    bool allowsWelcome = false;

    friend bool operator==(const LaunchDecision&, const LaunchDecision&) = default;
};
LaunchDecision decideLaunch(const LaunchArguments& arguments);

} // namespace ostrivane
