#include "app/window/SingleInstance.hpp"
#include "tests/TemporaryFolder.hpp"
#include "tests/app/model/platform/linux/FakeBus.hpp"

#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace ostrivane {

namespace {

constexpr int patience = 30'000;

/// This program is the first; the second one is a real start of Ostrivane.
class BusInstanceTest : public testing::Test {
protected:
    BusInstanceTest() {
        qputenv("OSTRIVANE_DATA_DIR", QByteArray::fromStdString(folder.path()));
        qputenv("OSTRIVANE_CONFIG_DIR", QByteArray::fromStdString(folder.file("config")));
    }
    ~BusInstanceTest() override {
        for (const char* name :
             {"OSTRIVANE_DATA_DIR", "OSTRIVANE_CONFIG_DIR", "DBUS_SESSION_BUS_ADDRESS", "XDG_ACTIVATION_TOKEN"})
            qunsetenv(name);
    }

    void beFirst() {
        first = nativeSingleInstance(folder.path());
        ASSERT_TRUE(first->claim());
        first->onActivated([this](std::optional<Page> page) { asked.push_back(page); });
    }

    /// The exit code of a further start, while this program goes on.
    int start(const QStringList& arguments) {
        QProcess second;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_ACTIVATION_TOKEN"), QStringLiteral("of the click"));
        second.setProcessEnvironment(environment);
        second.start(QStringLiteral(OSTRIVANE), arguments);
        if (!QTest::qWaitFor([&] { return second.state() == QProcess::NotRunning; }, patience)) {
            second.kill();
            second.waitForFinished();
            return -1;
        }
        said = second.readAllStandardError().toStdString();
        return second.exitCode();
    }

    TemporaryFolder folder;
    std::unique_ptr<SingleInstance> first;
    std::vector<std::optional<Page>> asked;
    std::string said;
};

} // namespace

TEST_F(BusInstanceTest, ShowsTheFirstOnesWindowOverTheBus) {
    const TemporaryFolder place;
    const FakeBus bus(place.path());
    qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray::fromStdString(bus.address()));
    beFirst();
    EXPECT_TRUE(first->canBeActivated());
    EXPECT_EQ(start({QStringLiteral("--page"), QStringLiteral("memory")}), 0);
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "of the click") << "which brings the window to the front";
    EXPECT_EQ(start({}), 0);
    EXPECT_EQ(start({QStringLiteral("--background")}), 0);
    EXPECT_EQ(start({QStringLiteral("--login")}), 0);
    EXPECT_EQ(asked, (std::vector<std::optional<Page>>{Page::memory, std::nullopt}))
        << "a start without a window shows none";
}

TEST_F(BusInstanceTest, KeepsASecondProgramAwayWithoutABus) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    beFirst();
    EXPECT_FALSE(first->canBeActivated());
    EXPECT_EQ(start({}), 1);
    EXPECT_NE(said.find("Ostrivane is running already"), std::string::npos) << said;
    EXPECT_EQ(start({QStringLiteral("--background")}), 0);
    EXPECT_TRUE(asked.empty());
}

} // namespace ostrivane
