#pragma once

#include <functional>
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

    /// Calls `launched` once the system has launched this program, with whether it did so as this item. To be called
    /// before the event loop runs, which may be what the system waits for. Here at once: an item that starts the
    /// program with "--login" needs to tell no more.
    virtual void onLaunched(const std::function<void(bool atLogin)>& launched) { launched(false); }
};

std::unique_ptr<LoginItem> nativeLoginItem();

} // namespace ostrivane
