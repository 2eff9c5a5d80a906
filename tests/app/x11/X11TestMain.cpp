#include "tests/app/x11/X11Display.hpp"

#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

int count = 1;
char name[] = "x11";
char* arguments[] = {name, nullptr};

/// Only where tests run: their names can be listed without a display.
class DisplayOfTests final : public testing::Environment {
public:
    void SetUp() override {
        ASSERT_FALSE(display.name().isEmpty()) << "Xvfb did not start";
        qputenv("DISPLAY", display.name());
        qputenv("QT_QPA_PLATFORM", "xcb");
        qunsetenv("WAYLAND_DISPLAY");
        application = std::make_unique<QApplication>(count, arguments);
    }
    void TearDown() override { application.reset(); }

private:
    ostrivane::X11Display display;
    std::unique_ptr<QApplication> application;
};

} // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!GTEST_FLAG_GET(list_tests))
        ::testing::AddGlobalTestEnvironment(new DisplayOfTests);
    return RUN_ALL_TESTS();
}
