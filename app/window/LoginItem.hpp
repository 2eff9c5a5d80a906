#pragma once

#include <memory>
#include <optional>
#include <string>

namespace ostrivane {

/// Whether the program starts with the user's session. On Linux an entry in the user's folder "autostart", on macOS the
/// system's login items. Belongs to the main thread.
class LoginItem {
public:
    enum class State {
        off,
        on,
        needsApproval, ///< asked for, and the user has yet to allow it
        unknown        ///< the system does not tell
    };

    virtual ~LoginItem() = default;

    virtual State state() const = 0;
    /// What went wrong, in the system's words; absent when all went well. `state` tells what holds now.
    virtual std::optional<std::string> set(bool enabled) = 0;
};

std::unique_ptr<LoginItem> nativeLoginItem();

} // namespace ostrivane
