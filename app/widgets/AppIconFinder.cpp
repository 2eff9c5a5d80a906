#include "app/widgets/AppIconFinder.hpp"

#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Strings.hpp"
#include "core/attribution/KeyFile.hpp"

#include <QApplication>
#include <QFile>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QImageReader>
#include <QThreadPool>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace ostrivane {

namespace {

constexpr qint64 largestEntry = 1 << 20; // bytes
constexpr int largestIcon = 128;         // dots; shown at 80 at the most

/// Ahead of a repaint, so that the many answers of a start make one.
constexpr int gathering = 60; // milliseconds

QImage readImage(const QString& path) {
    QImageReader reader(path);
    const QSize size = reader.size();
    if (size.isEmpty())
        return {};
    reader.setScaledSize(size.scaled(largestIcon, largestIcon, Qt::KeepAspectRatio));
    return reader.read();
}

} // namespace

AppIconFinder& AppIconFinder::instance() {
    static auto& finder = *new AppIconFinder; // a thread may still answer when all else is gone
    return finder;
}

QString AppIconFinder::iconNameOf(std::string_view desktopEntry) {
    const auto group = KeyFile::group(desktopEntry, "Desktop Entry");
    QString name = group ? text(KeyFile::text(KeyFile::value(*group, "Icon"))) : QString();
    for (const char16_t* ending : {u".png", u".svg", u".xpm"}) // as old entries name those of the theme
        if (!name.startsWith(u'/') && name.endsWith(QStringView(ending)))
            name.chop(4);
    return name;
}

QIcon AppIconFinder::icon(const std::string& bundlePath) {
    const QString path = text(bundlePath);
    if (const auto found = known.constFind(path); found != known.constEnd())
        return *found;
    known.insert(path, {});
    static auto& reader = *new QThreadPool;
    reader.setMaxThreadCount(1);
    reader.start([this, path] {
        Found found = look(path);
        QMetaObject::invokeMethod(
            this, [this, path, found = std::move(found)] { take(path, found); }, Qt::QueuedConnection);
    });
    return {};
}

AppIconFinder::Found AppIconFinder::look(const QString& path) {
    Found found;
    if (!path.endsWith(QStringLiteral(".desktop"))) {
        if (QFileInfo::exists(path))
            found.path = path;
        return found;
    }
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return found;
    const QByteArray entry = file.read(largestEntry);
    const QString name = iconNameOf({entry.constData(), static_cast<std::size_t>(entry.size())});
    if (name.startsWith(u'/'))
        found.image = QFileInfo(name).isFile() ? readImage(name) : QImage();
    else
        found.name = name;
    return found;
}

void AppIconFinder::take(const QString& path, const Found& found) {
    QIcon icon;
    if (!found.image.isNull())
        icon = QIcon(QPixmap::fromImage(found.image));
    else if (!found.name.isEmpty())
        icon = QIcon::fromTheme(found.name);
    else if (!found.path.isEmpty())
        icon = QFileIconProvider().icon(QFileInfo(found.path));
    if (icon.isNull() || icon.availableSizes().isEmpty())
        return;
    known.insert(path, icon);
    if (std::exchange(repaints, true))
        return;
    QTimer::singleShot(gathering, this, [this] {
        repaints = false;
        AppIcons::clear();
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible())
                window->update();
    });
}

} // namespace ostrivane
