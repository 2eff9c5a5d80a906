#include "app/platform/linux/SessionBus.hpp"
#include "app/window/DesktopAppearance.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace ostrivane {

namespace {

constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* portalSettings = "org.freedesktop.portal.Settings";
constexpr const char* space = "org.freedesktop.appearance";
constexpr const char* key = "color-scheme";
constexpr uint dark = 1;
constexpr uint light = 2;

} // namespace

/// What the desktop's portal says; until it answers, and without one, the toolkit's palette as it was at the start.
class PortalAppearance final : public QObject, public DesktopAppearance {
    Q_OBJECT
public:
    PortalAppearance()
        : isDark(QGuiApplication::palette().color(QPalette::Window).lightness() < 128), startedDark(isDark) {
        if (!bus.isConnected())
            return;
        bus->connect(QLatin1String(portal), QLatin1String(portalPath), QLatin1String(portalSettings),
                     QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QString, QString, QDBusVariant)));
        QDBusMessage call = QDBusMessage::createMethodCall(QLatin1String(portal), QLatin1String(portalPath),
                                                           QLatin1String(portalSettings), QStringLiteral("Read"));
        call << QLatin1String(space) << QLatin1String(key);
        auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* done) {
            const QDBusPendingReply<QDBusVariant> reply = *done;
            if (reply.isValid())
                take(reply.value().variant());
            done->deleteLater();
        });
    }

    bool prefersDark() const override { return isDark; }
    void onChange(std::function<void()> observer) override { changed = std::move(observer); }

private Q_SLOTS:
    void settingChanged(const QString& changedSpace, const QString& changedKey, const QDBusVariant& value) {
        if (changedSpace == QLatin1String(space) && changedKey == QLatin1String(key))
            take(value.variant());
    }

private:
    /// Older portals wrap the value twice.
    void take(QVariant value) {
        while (value.canConvert<QDBusVariant>())
            value = value.value<QDBusVariant>().variant();
        bool isNumber = false;
        const uint scheme = value.toUInt(&isNumber);
        const bool wanted = isNumber && scheme == dark ? true : isNumber && scheme == light ? false : startedDark;
        if (wanted == isDark)
            return;
        isDark = wanted;
        if (changed)
            changed();
    }

    SessionBus bus{"appearance"};
    bool isDark;
    const bool startedDark;
    std::function<void()> changed;
};

std::unique_ptr<DesktopAppearance> nativeDesktopAppearance() {
    return std::make_unique<PortalAppearance>();
}

} // namespace ostrivane

#include "PortalAppearance.moc"
