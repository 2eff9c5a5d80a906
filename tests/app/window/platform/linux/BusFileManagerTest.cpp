#include "app/widgets/Strings.hpp"
#include "app/window/FileManager.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/app/model/platform/linux/FakeBus.hpp"

#include <QDBusConnection>
#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

namespace ostrivane {

/// What a file manager is asked for.
class AskedFileManager final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    QStringList shown;

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the interface's name
    void ShowItems(const QStringList& addresses, const QString& /*startupId*/) { shown += addresses; }
};

/// What opens folders where no file manager has that interface.
class FolderOpener final : public QObject {
    Q_OBJECT
public:
    FolderOpener() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~FolderOpener() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    FolderOpener(const FolderOpener&) = delete;
    FolderOpener& operator=(const FolderOpener&) = delete;

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl& address) { opened.append(address.toLocalFile()); }
};

TEST(BusFileManager, HasTheDesktopPointAtTheFileElseOpensItsFolder) {
    constexpr int patience = 30'000;
    const TemporaryFolder folder;
    const std::string odd = "/opt/50% \xC3\xA9\"x\"/a b#c?";
    FolderOpener opener;
    const FakeBus bus(folder.path());
    qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray::fromStdString(bus.address()));
    int failures = 0;
    const auto failed = [&] { ++failures; };
    {
        const auto files = nativeFileManager();
        files->reveal(odd, failed); // nobody has the name on this bus
        EXPECT_TRUE(QTest::qWaitFor([&] { return !opener.opened.empty(); }, patience));
        EXPECT_EQ(opener.opened, QStringList{text("/opt/50% \xC3\xA9\"x\"")});

        AskedFileManager asked;
        const QString name = QStringLiteral("files of a test");
        QDBusConnection desktop = QDBusConnection::connectToBus(text(bus.address()), name);
        ASSERT_TRUE(desktop.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &asked,
                                           QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(desktop.registerService(QStringLiteral("org.freedesktop.FileManager1")));
        files->reveal(odd, failed);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !asked.shown.empty(); }, patience));
        EXPECT_EQ(asked.shown, QStringList{QString::fromLatin1(QUrl::fromLocalFile(text(odd)).toEncoded())});
        EXPECT_EQ(QUrl(asked.shown.value(0)).toLocalFile(), text(odd));
        EXPECT_EQ(opener.opened.size(), 1);
        QDBusConnection::disconnectFromBus(name);
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    nativeFileManager()->reveal("/usr/bin/env", failed);
    EXPECT_EQ(opener.opened.value(1), QStringLiteral("/usr/bin"));
    EXPECT_EQ(failures, 0);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace ostrivane

#include "BusFileManagerTest.moc"
