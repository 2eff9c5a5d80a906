#include "core/model/Page.hpp"
#include "tests/Fixtures.hpp"
#include "tests/TemporaryFolder.hpp"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <string>

namespace ostrivane {

namespace {

/// Pictures, as the program takes them from the command line.
class ScreenshotTest : public testing::Test {
protected:
    /// The exit code of a start that writes to that folder.
    int take(const std::string& pictures) {
        constexpr int patience = 120'000; // there are many
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("OSTRIVANE_DATA_DIR"), QString::fromStdString(folder.file("data")));
        environment.insert(QStringLiteral("OSTRIVANE_CONFIG_DIR"), QString::fromStdString(folder.file("config")));
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(OSTRIVANE),
                      {QStringLiteral("--replay"),
                       QString::fromStdString(fixture("recordings/virtual-machine.jsonl").string()),
                       QStringLiteral("--screenshot"), QString::fromStdString(pictures), QStringLiteral("--size"),
                       QStringLiteral("700x500")});
        if (!QTest::qWaitFor([&] { return program.state() == QProcess::NotRunning; }, patience)) {
            program.kill();
            program.waitForFinished();
            return -1;
        }
        said = program.readAllStandardError().toStdString();
        return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    }

    TemporaryFolder folder;
    std::string said;
};

} // namespace

TEST_F(ScreenshotTest, TakesEveryPageInBothThemesAtTheSizeThatIsAskedFor) {
    const std::string place = folder.file("new/pictures");
    ASSERT_EQ(take(place), 0) << said;
    const QDir pictures(QString::fromStdString(place));
    const auto pages = rawTexts(EnumTag<Page>());
    EXPECT_EQ(static_cast<std::size_t>(pictures.entryList(QDir::Files).size()), 2 * pages.size());
    for (const auto& [page, raw] : pages) {
        const std::string name(raw);
        const QImage light(pictures.filePath(QString::fromStdString(name + ".png")));
        const QImage dark(pictures.filePath(QString::fromStdString(name + "-dark.png")));
        EXPECT_EQ(light.size(), QSize(700, 500)) << name;
        EXPECT_EQ(dark.size(), QSize(700, 500)) << name;
        EXPECT_FALSE(light == dark) << name;
    }
}

TEST_F(ScreenshotTest, SaysSoWhereItsFolderCannotBeMade) {
    const std::string place = folder.write("a file", "") + "/pictures";
    EXPECT_EQ(take(place), 1);
    EXPECT_NE(said.find("The folder " + place + " cannot be made."), std::string::npos) << said;
}

} // namespace ostrivane
