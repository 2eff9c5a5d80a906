#pragma once

#include "app/window/LaunchArguments.hpp"

namespace ostrivane {

/// Plays a recording to its end, as fast as it goes, and writes a picture of every page in both themes to
/// `arguments.screenshots`: "cpu.png", "cpu-dark.png". Its history is made of the recording, in a folder that goes
/// afterwards. Answers the exit status; what is wrong is said on standard error.
int runScreenshots(const LaunchArguments& arguments);

} // namespace ostrivane
