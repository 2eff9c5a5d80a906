#pragma once

#include <optional>
#include <string>

namespace ostrivane {

/// What the environment says of the session bus; empty where it says nothing.
struct SessionBusVariables {
    std::string address;       ///< DBUS_SESSION_BUS_ADDRESS
    std::string runtimeFolder; ///< XDG_RUNTIME_DIR
};

/// The addresses told, else that of the user's bus where its socket lies; absent without either. None that starts a
/// bus: nobody would listen on that one.
std::optional<std::string> sessionBusAddress(const SessionBusVariables& variables);

} // namespace ostrivane
