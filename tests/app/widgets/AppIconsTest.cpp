#include "app/widgets/AppIcons.hpp"
#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/AppIconFinder.hpp"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

class AppIconsTest : public testing::Test {
protected:
    AppIconsTest() { AppIcons::clear(); }

    static QImage picture(std::string_view key, std::string_view name, const std::optional<std::string>& path = {},
                          int pixels = 32, qreal ratio = 1) {
        return AppIcons::pixmap(key, name, path, pixels, ratio).toImage();
    }
    static void write(const QString& path, const QByteArray& text) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

private:
    WidgetSetting setting;
};

TEST_F(AppIconsTest, ATileTellsApplicationsApart) {
    const QImage capital = picture("/a", "Firefox");
    EXPECT_EQ(picture("/a", "firefox"), capital) << "the initial is a capital";
    EXPECT_NE(picture("/a", "Slack"), capital);
    EXPECT_NE(picture("exe:node", "node"), picture("/node", "node")) << "a gear, and no letter";
    const QPixmap sharp = AppIcons::pixmap("/a", "A", {}, 16, 2);
    EXPECT_EQ(sharp.size(), QSize(32, 32));
    EXPECT_EQ(sharp.deviceIndependentSize(), QSizeF(16, 16));
    for (const std::string_view odd : {"", "   ", "\xff\xfe", "👩‍👩‍👧‍👦 family", "…", "ß"})
        EXPECT_FALSE(picture(odd, odd).isNull());
    EXPECT_FALSE(picture("/long", std::string(4096, 'W')).isNull());
}

TEST_F(AppIconsTest, ReadsWhatADesktopEntryNames) {
    EXPECT_EQ(AppIconFinder::iconNameOf("[Desktop Entry]\nIcon=firefox\n[Desktop Action x]\nIcon=other\n"),
              QStringLiteral("firefox"));
    EXPECT_EQ(AppIconFinder::iconNameOf("[Desktop Entry]\nIcon=old.png\n"), QStringLiteral("old"));
    EXPECT_EQ(AppIconFinder::iconNameOf("[Desktop Entry]\nIcon=/opt/my\\sapp/icon.png\n"),
              QStringLiteral("/opt/my app/icon.png"));
    EXPECT_EQ(AppIconFinder::iconNameOf("no entry at all"), QString());
}

TEST_F(AppIconsTest, TheIconOfAnEntryTakesThePlaceOfItsTile) {
    const QTemporaryDir folder;
    const QString icon = folder.filePath(QStringLiteral("icon.png"));
    QImage red(64, 64, QImage::Format_ARGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(icon));
    const QString entry = folder.filePath(QStringLiteral("red.desktop"));
    write(entry, "[Desktop Entry]\nName=Red\nIcon=" + icon.toUtf8() + "\n");
    const std::string key = entry.toStdString();

    QWidget window;
    showActive(window, {50, 50});
    PaintCount paints(window);
    paints.take();
    EXPECT_NE(picture(key, "Red").pixelColor(16, 2), QColor(Qt::red)) << "one that has ended: its entry is not known";
    const QImage tile = picture(key, "Red", key);
    EXPECT_NE(tile.pixelColor(16, 2), QColor(Qt::red)) << "nothing is waited for";
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture(key, "Red", key).pixelColor(16, 2) == QColor(Qt::red); }));
    EXPECT_GE(paints.take(), 1) << "what is on screen is painted anew";
    EXPECT_EQ(picture(key, "Red"), tile);
}

TEST_F(AppIconsTest, AnEntryThatCannotBeReadKeepsItsTile) {
    const QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("none.desktop"));
    const QString hollow = folder.filePath(QStringLiteral("hollow.desktop"));
    write(hollow, "[Desktop Entry]\nIcon=/nonexistent/icon.png\n");
    const QString icon = folder.filePath(QStringLiteral("icon.png"));
    QImage red(64, 64, QImage::Format_ARGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(icon));
    const QString good = folder.filePath(QStringLiteral("good.desktop"));
    write(good, "[Desktop Entry]\nIcon=" + icon.toUtf8() + "\n");

    const QImage tile = picture("/same key", "Name");
    const auto expectTiles = [&] {
        for (const std::string& path :
             {missing.toStdString(), hollow.toStdString(), folder.path().toStdString() + ".desktop"}) {
            AppIcons::clear();
            EXPECT_EQ(picture("/same key", "Name", path), tile) << path;
        }
    };
    expectTiles(); // which asks for their icons
    // Entries are read one after the other: once this one has its icon, those are answered.
    constexpr int patience = 30'000;
    const std::string key = good.toStdString();
    const auto isGood = [&] {
        AppIcons::clear();
        return picture(key, "Good", key).pixelColor(16, 2) == QColor(Qt::red);
    };
    ASSERT_TRUE(QTest::qWaitFor(isGood, patience));
    expectTiles();
}

} // namespace

} // namespace ostrivane
