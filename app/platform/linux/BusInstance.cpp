#include "app/platform/linux/SessionBus.hpp"
#include "app/widgets/Strings.hpp"
#include "app/window/SingleInstance.hpp"
#include "core/model/RawValue.hpp"

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
constexpr const char* service = "org.ostrivane.Ostrivane";
constexpr const char* object = "/org/ostrivane/Ostrivane";
constexpr const char* applicationInterface = "org.freedesktop.Application";
constexpr const char* pageAction = "page";
// What lets a window come to the front on desktops that let none do so by itself.
constexpr const char* tokenKey = "activation-token";
constexpr const char* tokenVariable = "XDG_ACTIVATION_TOKEN"; // which the toolkit looks for, and uses up

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
    void Activate(const QVariantMap& platformData) { tell(std::nullopt, platformData); }
    void Open(const QStringList& /*uris*/, const QVariantMap& platformData) { tell(std::nullopt, platformData); }
    void ActivateAction(const QString& action, const QVariantList& parameters, const QVariantMap& platformData) {
        const bool isPage = action == QLatin1String(pageAction) && !parameters.isEmpty();
        tell(isPage ? fromRawValue<Page>(parameters.first().toString().toStdString()) : std::nullopt, platformData);
    }
    // NOLINTEND(readability-identifier-naming)

private:
    void tell(const std::optional<Page>& page, const QVariantMap& platformData) {
        if (const QByteArray token = platformData.value(QLatin1String(tokenKey)).toByteArray(); !token.isEmpty())
            qputenv(tokenVariable, token);
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

    bool claim() override {
        if (bus.isConnected()) {
            bus->registerObject(QLatin1String(object), &application, QDBusConnection::ExportAllSlots);
            if (!bus->registerService(QLatin1String(service)))
                return false;
        }
        if (claimFile())
            return true;
        bus->unregisterService(QLatin1String(service)); // who has the file cannot be reached by it
        return false;
    }

    bool canBeActivated() const override { return bus.isConnected(); }

    bool showFirst(const std::optional<Page>& page) override {
        if (!bus.isConnected())
            return false;
        QDBusMessage call = QDBusMessage::createMethodCall(
            QLatin1String(service), QLatin1String(object), QLatin1String(applicationInterface),
            page ? QStringLiteral("ActivateAction") : QStringLiteral("Activate"));
        if (page)
            call << QLatin1String(pageAction) << QVariantList{text(rawValue(*page))};
        QVariantMap platformData;
        if (qEnvironmentVariableIsSet(tokenVariable))
            platformData.insert(QLatin1String(tokenKey), qEnvironmentVariable(tokenVariable));
        call << platformData;
        return bus->call(call, QDBus::Block, static_cast<int>(patience.count())).type() == QDBusMessage::ReplyMessage;
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

    BusApplication application; // which the bus knows
    SessionBus bus{"instance"};
    QLockFile lock;
};

} // namespace

std::unique_ptr<SingleInstance> nativeSingleInstance(const std::string& folder) {
    return std::make_unique<BusInstance>(folder);
}

} // namespace ostrivane

#include "BusInstance.moc"
