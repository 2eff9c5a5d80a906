#include "app/pages/WelcomeSheet.hpp"

#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
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
    button(*sheet, "Notify me when something needs attention")->toggle(); // as assistive programs do
    EXPECT_FALSE((*harness.model->settings()).notificationsEnabled);
    button(*sheet, "Start at login")->click();
    EXPECT_EQ(harness.loginItem.now, LoginItem::State::on);
    window.resize(900, 300);
    QApplication::processEvents();
    EXPECT_EQ(sheet->geometry(), window.rect());
    EXPECT_TRUE(sheet->rect().contains(sheet->childAt(sheet->rect().center())->geometry().topLeft()));
}

TEST(WelcomeSheet, isWholeAtItsFirstShowing) {
    const double usual = Type::base();
    for (const double base : {12.0, 13.0, 16.0, 26.0}) {
        Type::setBase(base);
        PageHarness harness;
        QWidget window;
        window.resize(1240, 800);
        WelcomeSheet sheet(harness.page, &window);
        window.show();
        sheet.show();
        QApplication::processEvents();
        const QScrollBar* bar = sheet.findChild<QScrollArea*>()->verticalScrollBar();
        EXPECT_TRUE(bar->maximum() == 0 || base > 16) << base << ": " << bar->maximum();
        window.resize(960, 620);
        QApplication::processEvents();
        for (const QWidget* child : sheet.findChildren<QWidget*>()) {
            const auto* label = dynamic_cast<const TextLabel*>(child);
            EXPECT_TRUE(!label || !label->isVisible() || label->height() >= label->heightForWidth(label->width()))
                << base << ": " << (label ? label->text().toStdString() : "");
        }
    }
    Type::setBase(usual);
}

} // namespace
} // namespace ostrivane
