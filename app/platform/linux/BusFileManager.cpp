#include "app/platform/linux/SessionBus.hpp"
#include "app/widgets/Strings.hpp"
#include "app/window/FileManager.hpp"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QObject>
#include <QUrl>

#include <optional>
#include <utility>

namespace ostrivane {

namespace {

constexpr const char* service = "org.freedesktop.FileManager1";
constexpr const char* object = "/org/freedesktop/FileManager1";

/// The desktop's file manager where it answers to the name that they share; else whatever opens folders.
class BusFileManager final : public FileManager {
public:
    void reveal(const std::string& path, std::function<void()> failed) override {
        const QString file = text(path);
        if (!bus)
            bus.emplace("files"); // not before it is wanted
        if (!bus->isConnected())
            return openFolder(file, failed);
        QDBusMessage call = QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(object),
                                                           QLatin1String(service), QStringLiteral("ShowItems"));
        const QString address = QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded());
        call << QStringList{address} << QString();
        auto* watcher = new QDBusPendingCallWatcher((*bus)->asyncCall(call), &alive);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &alive,
                         [watcher, file, failed = std::move(failed)] {
                             if (watcher->isError())
                                 openFolder(file, failed);
                             watcher->deleteLater();
                         });
    }

private:
    static void openFolder(const QString& file, const std::function<void()>& failed) {
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).path())))
            failed();
    }

    std::optional<SessionBus> bus;
    QObject alive;
};

} // namespace

std::unique_ptr<FileManager> nativeFileManager() {
    return std::make_unique<BusFileManager>();
}

} // namespace ostrivane
