#pragma once

namespace ostrivane {

/// Whether the program stands in the Dock and among the applications to switch between, or runs as an agent. Sets it
/// only where it differs. Nothing elsewhere than on macOS.
void updateActivationPolicy(bool isRegular);

} // namespace ostrivane
