#include "tests/TemporaryFolder.hpp"
#include "tests/app/x11/X11Display.hpp"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

constexpr int patience = 30'000;

} // namespace

TEST(LostDisplay, EndsTheProgram) {
    const TemporaryFolder folder;
    X11Display display;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(display.name()));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent"));
    environment.insert(QStringLiteral("OSTRIVANE_DATA_DIR"), QString::fromStdString(folder.file("data")));
    environment.insert(QStringLiteral("OSTRIVANE_CONFIG_DIR"), QString::fromStdString(folder.file("config")));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(OSTRIVANE), {});
    ASSERT_TRUE(program.waitForStarted());
    const QString history = QString::fromStdString(folder.file("data/history.sqlite"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(history); }, patience)) << "it did not get going";
    display.end();
    ASSERT_TRUE(program.waitForFinished(patience)) << "an invisible program is left";
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_NE(program.exitCode(), 0);
}

} // namespace ostrivane
