#pragma once

#include <QHash>
#include <QIcon>
#include <QImage>
#include <QObject>
#include <QString>

#include <string>
#include <string_view>

namespace ostrivane {

/// Finds the icons of bundles and desktop entries. These may lie on disks that take their time, so files are read by a
/// thread of its own; until one has answered there is no icon, and then what is on screen is painted anew. Main thread.
class AppIconFinder final : public QObject {
public:
    /// Lives as long as the process: a disk that never answers holds up nothing, the end of the program included.
    static AppIconFinder& instance();

    /// Null where there is none, or none yet.
    QIcon icon(const std::string& bundlePath);

    /// What a desktop entry says of its icon: the name of one of the theme, or the path of a file; empty without.
    static QString iconNameOf(std::string_view desktopEntry);

private:
    /// What a look at the disk gives.
    struct Found {
        QString name; ///< in the theme
        QString path; ///< of a bundle, whose icon the system knows
        QImage image; ///< of a file that the entry names
    };
    static Found look(const QString& path);
    void take(const QString& path, const Found& found);

    QHash<QString, QIcon> known; ///< a null one: asked for, or there is none
    bool repaints = false;
};

} // namespace ostrivane
