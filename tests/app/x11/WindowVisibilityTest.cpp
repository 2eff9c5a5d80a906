#include "app/window/WindowVisibility.hpp"

#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

class WindowVisibilityTest : public testing::Test {
protected:
    WindowVisibilityTest() {
        window.setGeometry(100, 100, 300, 200);
        cover.setWindowFlag(Qt::FramelessWindowHint);
    }

    bool becomes(bool canBeSeen) {
        constexpr int patience = 30'000;
        return QTest::qWaitFor([&] { return visibility.canBeSeen() == canBeSeen; }, patience);
    }
    void putOver(const QRect& place) {
        cover.setGeometry(place);
        cover.show();
        cover.raise();
    }

    QWidget window;
    QWidget cover;
    WindowVisibility visibility{&window};
};

} // namespace

TEST_F(WindowVisibilityTest, EndsBehindAnotherWindowAndReturns) {
    EXPECT_FALSE(visibility.canBeSeen());
    window.show();
    ASSERT_TRUE(becomes(true));
    putOver(window.geometry().adjusted(-50, -50, 50, 50));
    EXPECT_TRUE(becomes(false));
    putOver(window.geometry().adjusted(-50, -50, -10, 50));
    EXPECT_TRUE(becomes(true)) << "a strip of it is in sight";
    putOver(window.geometry().adjusted(-50, -50, 50, 50));
    EXPECT_TRUE(becomes(false));
    cover.move(600, 600);
    EXPECT_TRUE(becomes(true));
}

TEST_F(WindowVisibilityTest, IsToldOfAWindowThatWasClosedAndIsShownAgain) {
    window.show();
    ASSERT_TRUE(becomes(true));
    putOver(window.geometry().adjusted(-50, -50, 50, 50));
    ASSERT_TRUE(becomes(false));
    window.close();
    cover.hide();
    window.show();
    EXPECT_TRUE(becomes(true)) << "it was covered when it was closed";
    putOver(window.geometry().adjusted(-50, -50, 50, 50));
    EXPECT_TRUE(becomes(false));
    cover.hide();
    EXPECT_TRUE(becomes(true));
}

} // namespace ostrivane
