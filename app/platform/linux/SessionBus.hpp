#pragma once

#include <QDBusConnection>

namespace ostrivane {

/// A connection of its owner's to the user's session bus. Not connected where there is none; none is started, as nobody
/// would listen on that one.
class SessionBus {
public:
    /// @param purpose  of the owner: one connection for each
    explicit SessionBus(const char* purpose);
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    bool isConnected() const { return bus.isConnected(); }
    QDBusConnection* operator->() { return &bus; }

private:
    QDBusConnection bus;
};

} // namespace ostrivane
