#include "app/platform/linux/SessionBus.hpp"

#include "app/model/SessionBusAddress.hpp"
#include "app/widgets/Strings.hpp"

namespace ostrivane {

namespace {

QDBusConnection connect(const QString& name) {
    const auto address = sessionBusAddress({.address = qgetenv("DBUS_SESSION_BUS_ADDRESS").toStdString(),
                                            .runtimeFolder = qgetenv("XDG_RUNTIME_DIR").toStdString()});
    return address ? QDBusConnection::connectToBus(text(*address), name) : QDBusConnection(name);
}

} // namespace

SessionBus::SessionBus(const char* purpose) : bus(connect(QStringLiteral("ostrivane ") + QLatin1String(purpose))) {}

SessionBus::~SessionBus() {
    QDBusConnection::disconnectFromBus(bus.name());
}

} // namespace ostrivane
