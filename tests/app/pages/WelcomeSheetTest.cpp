#include "app/pages/WelcomeSheet.hpp"

#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QTest>

namespace ostrivane {
namespace {

class WelcomeSheetTest : public ::testing::Test {
protected:
    WelcomeSheetTest() {
        harness.model->setShowsWelcome(true);
        below = new QLineEdit(&window);
        window.resize(1240, 800);
        sheet = new WelcomeSheet(harness.page, &window);
        window.show();
        sheet->show();
        QApplication::setActiveWindow(&window);
        QApplication::processEvents();
    }

    PageHarness harness;
    QWidget window;
    QLineEdit* below = nullptr;
    WelcomeSheet* sheet = nullptr;
};

TEST_F(WelcomeSheetTest, goesByEachOfItsWays) {
    for (const auto& leave : std::vector<std::function<void()>>{[&] { QTest::keyClick(sheet, Qt::Key_Escape); },
                                                                [&] { QTest::keyClick(sheet, Qt::Key_Return); },
                                                                [&] { button(*sheet, "Get Started")->click(); }}) {
        sheet->show();
        harness.model->setShowsWelcome(true);
        leave();
        EXPECT_FALSE(harness.model->showsWelcome());
        EXPECT_FALSE(sheet->isVisible());
        EXPECT_EQ(harness.model->navigation().selectedPage(), Page::overview);
    }
    sheet->show();
    harness.model->setShowsWelcome(true);
    button(*sheet, "Settings…")->click();
    EXPECT_FALSE(harness.model->showsWelcome());
    EXPECT_EQ(harness.model->navigation().selectedPage(), Page::settings);
}

TEST_F(WelcomeSheetTest, keepsTheFocus) {
    std::vector<QWidget*> visited;
    for (int step = 0; step < 5; ++step) {
        QWidget* focus = window.focusWidget();
        ASSERT_NE(focus, nullptr);
        EXPECT_TRUE(sheet->isAncestorOf(focus));
        visited.push_back(focus);
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    EXPECT_EQ(visited.front(), button(*sheet, "Get Started"));
    EXPECT_EQ(visited.back(), visited.front()); // four stops
    EXPECT_EQ(visited[1], button(*sheet, "Start at login"));
    QTest::keyClick(window.focusWidget(), Qt::Key_Backtab);
    EXPECT_EQ(window.focusWidget(), visited.front());
    below->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(sheet->isAncestorOf(window.focusWidget()));
}

TEST_F(WelcomeSheetTest, writesItsChoicesAndCoversTheWindow) {
    button(*sheet, "Notify me when something needs attention")->click();
    EXPECT_FALSE((*harness.model->settings()).notificationsEnabled);
    button(*sheet, "Start at login")->click();
    EXPECT_EQ(harness.loginItem.now, LoginItem::State::on);
    window.resize(900, 300);
    QApplication::processEvents();
    EXPECT_EQ(sheet->geometry(), window.rect());
    EXPECT_TRUE(sheet->rect().contains(sheet->childAt(sheet->rect().center())->geometry().topLeft()));
}

} // namespace
} // namespace ostrivane
