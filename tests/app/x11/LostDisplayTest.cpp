#include "app/model/FileKeyValueStore.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/app/x11/X11Display.hpp"
#include "tests/app/x11/X11Visitor.hpp"
#include "tests/history/StoreHarness.hpp"

#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

namespace {

constexpr int patience = 30'000;

/// What stands in the file of another program, which may run; empty while there is none.
std::vector<StoredSession> sessionsIn(const std::string& file) {
    StoreHarness reader(file, HistoryAccess::readOnly);
    return reader.answer<std::vector<StoredSession>>(
        [](HistoryStore& store, auto got) { store.sessions(std::move(got)); });
}

} // namespace

TEST(LostDisplay, EndsTheProgramAndTheSessionThatItRecords) {
    const TemporaryFolder folder;
    FileKeyValueStore(folder.file("config")).setBoolean("hasOnboarded", true); // nobody is welcomed
    X11Display display;
    ASSERT_FALSE(display.name().isEmpty());
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

    const X11Visitor visitor(display.name());
    std::optional<xcb_window_t> window;
    ASSERT_TRUE(QTest::qWaitFor([&] { return (window = visitor.activeWindow()).has_value(); }, patience))
        << "it did not get going";
    // To the sidebar, from there to the header of the first page, and on its button, which starts a session.
    visitor.type(*window, {X11Visitor::controlF, X11Visitor::f6, X11Visitor::space});
    const std::string history = folder.file("data/history.sqlite");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !sessionsIn(history).empty(); }, patience));
    ASSERT_FALSE(sessionsIn(history).front().end);

    display.end();
    ASSERT_TRUE(program.waitForFinished(patience)) << "an invisible program is left";
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_NE(program.exitCode(), 0);
    EXPECT_TRUE(sessionsIn(history).front().end) << "what it had recorded is lost";
}

} // namespace ostrivane
