#include "app/model/SessionBusAddress.hpp"
#include "app/widgets/Strings.hpp"
#include "app/window/SingleInstance.hpp"
#include "core/model/RawValue.hpp"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QObject>
#include <QVariantMap>

#include <chrono>
#include <utility>

namespace ostrivane {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 2000ms; // for the first to answer
constexpr const char* connectionName = "ostrivane instance";
constexpr const char* service = "org.ostrivane.Ostrivane";
constexpr const char* object = "/org/ostrivane/Ostrivane";
constexpr const char* applicationInterface = "org.freedesktop.Application";
constexpr const char* pageAction = "page";

} // namespace

/// What a desktop, and a further start, may ask of a running program.
class BusApplication final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    using QObject::QObject;
    std::function<void(std::optional<Page>)> activated;

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the interface's names
    void Activate(const QVariantMap& /*platformData*/) { tell(std::nullopt); }
    void Open(const QStringList& /*uris*/, const QVariantMap& /*platformData*/) { tell(std::nullopt); }
    void ActivateAction(const QString& action, const QVariantList& parameters, const QVariantMap& /*platformData*/) {
        if (action != QLatin1String(pageAction) || parameters.isEmpty())
            return tell(std::nullopt);
        tell(fromRawValue<Page>(parameters.first().toString().toStdString()));
    }
    // NOLINTEND(readability-identifier-naming)

private:
    void tell(const std::optional<Page>& page) {
        if (activated)
            activated(page);
    }
};

namespace {

/// Over the session's bus: its name is the program's. Where there is no bus, or none any more, a locked file keeps a
/// second program away, which can then not show the first one's window.
class BusInstance final : public SingleInstance {
public:
    explicit BusInstance(const std::string& folder) : lock(text(folder + "/window.lock")) {}
    ~BusInstance() override { QDBusConnection::disconnectFromBus(QLatin1String(connectionName)); }

    bool claim() override {
        const auto address = sessionBusAddress({.address = qgetenv("DBUS_SESSION_BUS_ADDRESS").toStdString(),
                                                .runtimeFolder = qgetenv("XDG_RUNTIME_DIR").toStdString()});
        QDBusConnection bus = QDBusConnection::connectToBus(text(address.value_or("")), QLatin1String(connectionName));
        if (address && bus.isConnected()) {
            bus.registerObject(QLatin1String(object), &application, QDBusConnection::ExportAllSlots);
            if (!bus.registerService(QLatin1String(service)))
                return false;
        }
        if (claimFile())
            return true;
        bus.unregisterService(QLatin1String(service)); // who has the file cannot be reached by it
        return false;
    }

    bool showFirst(const std::optional<Page>& page) override {
        const QDBusConnection bus{QLatin1String(connectionName)};
        if (!bus.isConnected())
            return false;
        QDBusMessage call = QDBusMessage::createMethodCall(
            QLatin1String(service), QLatin1String(object), QLatin1String(applicationInterface),
            page ? QStringLiteral("ActivateAction") : QStringLiteral("Activate"));
        if (page)
            call << QLatin1String(pageAction) << QVariantList{text(rawValue(*page))};
        call << QVariantMap{};
        return bus.call(call, QDBus::Block, static_cast<int>(patience.count())).type() == QDBusMessage::ReplyMessage;
    }

    void onActivated(std::function<void(std::optional<Page>)> activated) override {
        application.activated = std::move(activated);
    }

private:
    bool claimFile() {
        QDir().mkpath(QFileInfo(lock.fileName()).path());
        lock.setStaleLockTime(0); // only a program that has ended leaves a stale one
        // Where no lock can be made, two programs are better than none.
        return lock.tryLock() || lock.error() != QLockFile::LockFailedError;
    }

    BusApplication application;
    QLockFile lock;
};

} // namespace

std::unique_ptr<SingleInstance> nativeSingleInstance(const std::string& folder) {
    return std::make_unique<BusInstance>(folder);
}

} // namespace ostrivane

#include "BusInstance.moc"
