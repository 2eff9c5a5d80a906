#include "app/window/MainWindow.hpp"
#include "app/pages/WelcomeSheet.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Type.hpp"
#include "app/window/MainMenu.hpp"
#include "app/window/Sidebar.hpp"
#include "tests/app/pages/PageHarness.hpp"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

/// A window over a recorded machine, shown and seen.
struct ShownWindow {
    explicit ShownWindow(const char* recording = virtualMachine) {
        harness.play(recording);
        window.emplace(harness.page, MenuActions{}, [this] { return mayClose; });
        window->resize(1240, 800);
        window->show();
        window->setSeen(true);
    }

    PageHarness harness;
    bool mayClose = true;
    std::optional<MainWindow> window;
};

QAction* item(MainWindow& window, const QString& menu, const QString& title) {
    for (QAction* top : window.menuBar()->actions())
        if (top->text() == menu)
            for (QAction* one : top->menu()->actions())
                if (one->text() == title)
                    return one;
    return nullptr;
}

/// Counts how often a widget is asked to lay itself out.
struct LayoutCount final : QObject {
    explicit LayoutCount(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::LayoutRequest ? 1 : 0;
        return false;
    }
    int count = 0;
};

PageSet pages(const ShownWindow& shown) {
    return shown.harness.model->demand().pages;
}

} // namespace

TEST(MainWindow, registersThePageThatIsShownAndNoOther) {
    ShownWindow shown;
    AppModel& model = *shown.harness.model;
    EXPECT_EQ(pages(shown), PageSet{"overview"});
    for (const Page page : shortcutPages()) {
        model.select(page);
        EXPECT_EQ(shown.window->currentPage()->page(), page);
        EXPECT_TRUE(shown.window->currentPage()->isAwake());
        EXPECT_EQ(pages(shown), PageSet{std::string(rawValue(page))});
    }
    shown.window->setSeen(false);
    EXPECT_EQ(pages(shown), PageSet{});
    EXPECT_FALSE(shown.window->currentPage()->isAwake());
    model.select(Page::cpu);
    EXPECT_EQ(pages(shown), PageSet{}) << "a page nobody can see asks for nothing";
    shown.window->setSeen(true);
    EXPECT_EQ(pages(shown), PageSet{"cpu"});
    shown.window->hide();
    EXPECT_EQ(pages(shown), PageSet{});
    shown.window.reset();
    EXPECT_EQ(pages(shown), PageSet{});
}

TEST(MainWindow, goesBackAndForwardByMenu) {
    ShownWindow shown;
    AppModel& model = *shown.harness.model;
    QAction* back = item(*shown.window, QStringLiteral("Go"), QStringLiteral("Back"));
    QAction* forward = item(*shown.window, QStringLiteral("Go"), QStringLiteral("Forward"));
    ASSERT_TRUE(back && forward);
    EXPECT_FALSE(back->isEnabled());
    model.select(Page::memory);
    model.select(Page::cpu);
    EXPECT_TRUE(back->isEnabled());
    EXPECT_FALSE(forward->isEnabled());
    back->trigger();
    EXPECT_EQ(shown.window->currentPage()->page(), Page::memory);
    EXPECT_TRUE(item(*shown.window, QStringLiteral("Go"), QStringLiteral("Memory"))->isChecked());
    forward->trigger();
    EXPECT_EQ(shown.window->currentPage()->page(), Page::cpu);
    EXPECT_FALSE(item(*shown.window, QStringLiteral("Go"), QStringLiteral("Memory"))->isChecked());
}

TEST(MainWindow, hidesTheSidebarAndSaysSo) {
    ShownWindow shown;
    ASSERT_TRUE(item(*shown.window, QStringLiteral("View"), QStringLiteral("Hide Sidebar")));
    shown.harness.model->setSidebarVisible(false);
    EXPECT_FALSE(shown.window->findChild<Sidebar*>()->isVisible());
    EXPECT_TRUE(item(*shown.window, QStringLiteral("View"), QStringLiteral("Show Sidebar")));
}

TEST(MainWindow, showsTheWelcomeWhileTheModelSaysSo) {
    ShownWindow shown;
    EXPECT_FALSE(shown.window->findChild<WelcomeSheet*>());
    shown.harness.model->setShowsWelcome(true);
    EXPECT_TRUE(shown.window->findChild<WelcomeSheet*>());
    shown.harness.model->setShowsWelcome(false);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(shown.window->findChild<WelcomeSheet*>());
}

TEST(MainWindow, tellsOfAHistoryThatIsNotKept) {
    ShownWindow shown;
    auto* banner = shown.window->findChild<Banner*>();
    EXPECT_FALSE(banner->isVisible());
    shown.window->showHistoryProblem("database is locked");
    EXPECT_TRUE(banner->isVisible());
    shown.window->showHistoryProblem(std::nullopt);
    EXPECT_FALSE(banner->isVisible());
}

TEST(MainWindow, movesTheFocusAroundByF6) {
    ShownWindow shown;
    shown.harness.model->select(Page::processes);
    QTest::keyClick(&*shown.window, Qt::Key_Slash);
    EXPECT_TRUE(shown.window->currentPage()->filterField());
    const auto* sidebar = shown.window->findChild<Sidebar*>();
    shown.window->activateWindow();
    shown.window->focusSearch();
    ASSERT_TRUE(sidebar->isAncestorOf(shown.window->focusWidget()));
    QTest::keyClick(&*shown.window, Qt::Key_F6);
    EXPECT_FALSE(sidebar->isAncestorOf(shown.window->focusWidget()));
    QTest::keyClick(&*shown.window, Qt::Key_F6);
    QTest::keyClick(&*shown.window, Qt::Key_F6);
    EXPECT_TRUE(sidebar->isAncestorOf(shown.window->focusWidget())) << "three places in a ring";
}

TEST(MainWindow, leavesThePageAloneWhenTheSidebarGetsTheFocus) {
    ShownWindow shown;
    AppModel& model = *shown.harness.model;
    for (const Page page : {Page::settings, Page::memory}) {
        model.select(page);
        shown.window->findChild<Sidebar*>()->focusList();
        EXPECT_EQ(model.navigation().selectedPage(), page);
        for (auto* list : shown.window->findChild<Sidebar*>()->findChildren<QListView*>())
            list->setFocus(Qt::TabFocusReason);
        EXPECT_EQ(model.navigation().selectedPage(), page);
    }
    auto* pages = shown.window->findChild<Sidebar*>()->findChildren<QListView*>().first();
    pages->setFocus(Qt::TabFocusReason);
    QTest::keyClick(pages, Qt::Key_Down);
    EXPECT_EQ(model.navigation().selectedPage(), Page::gpu) << "the keys choose";
}

TEST(MainWindow, findsEveryPageBySearch) {
    ShownWindow shown;
    auto* search = shown.window->findChild<Sidebar*>()->findChild<QLineEdit*>();
    for (const auto& [words, page] :
         {std::pair{"sett", Page::settings}, std::pair{"MEM", Page::memory}, std::pair{"no such", Page::memory}}) {
        search->setText(QString::fromLatin1(words));
        QTest::keyClick(search, Qt::Key_Return);
        EXPECT_EQ(shown.harness.model->navigation().selectedPage(), page) << words;
    }
}

TEST(MainWindow, scrollsAPageByKeysAndKeepsItsWidth) {
    ShownWindow shown(developer);
    shown.window->resize(960, 620);
    PageView* page = shown.window->currentPage();
    auto* area = page->findChild<QScrollArea*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return area->verticalScrollBar()->isVisible(); }));
    ASSERT_GT(area->verticalScrollBar()->maximum(), 0);
    const auto columns = [&] { return area->widget()->width() - area->widget()->contentsMargins().right(); };
    const QWidget* header = page->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    EXPECT_EQ(columns(), header->width() - header->layout()->contentsMargins().right());
    QTest::keyClick(page, Qt::Key_PageDown);
    EXPECT_GT(area->verticalScrollBar()->value(), 0);
    QTest::keyClick(page, Qt::Key_Home);
    EXPECT_EQ(area->verticalScrollBar()->value(), 0);
}

TEST(MainWindow, comesToRestAtEveryWidth) {
    Type::setBase(20);
    ShownWindow shown(developer);
    for (const Page page : {Page::overview, Page::cpu}) {
        shown.harness.model->select(page);
        LayoutCount layouts(*shown.window->currentPage());
        for (int width = 700; width < 1200; ++width) {
            shown.window->resize(width, 620);
            for (int round = 0; round < 10; ++round)
                QCoreApplication::processEvents();
            layouts.count = 0;
            for (int round = 0; round < 3; ++round)
                QCoreApplication::processEvents();
            ASSERT_EQ(layouts.count, 0) << rawValue(page) << " at " << width;
        }
    }
    Type::setBase(13);
}

TEST(MainWindow, putsTheControlsOfAHeaderBelowWhereTheLetteringIsLarge) {
    Type::setBase(26);
    ShownWindow shown(developer);
    shown.window->resize(1008, 536); // of a screen of 1024 x 600
    for (const Page page : shortcutPages()) {
        shown.harness.model->select(page);
        shown.harness.settle();
        EXPECT_FALSE(shown.window->grab().isNull());
        for (const auto* control : shown.window->currentPage()->findChildren<SegmentedControl*>())
            EXPECT_LE(control->geometry().right(), control->parentWidget()->width()) << rawValue(page);
    }
    Type::setBase(13);
}

TEST(MainWindow, showsEveryPageOfEveryMachineAtBothSizes) {
    for (const char* recording : {laptop, developer, virtualMachine}) {
        ShownWindow shown(recording);
        for (const QSize size : {QSize(1240, 800), QSize(960, 620)}) {
            shown.window->resize(size);
            for (const Page page : shortcutPages()) {
                shown.harness.model->select(page);
                shown.harness.settle();
                EXPECT_FALSE(shown.window->grab().isNull()) << rawValue(page);
                EXPECT_LE(shown.window->currentPage()->minimumSizeHint().width(), shown.window->currentPage()->width())
                    << rawValue(page) << " at " << size.width();
            }
        }
    }
}

TEST(MainWindow, bearsAMachineOfWhichNothingCanBeBelieved) {
    ShownWindow shown;
    shown.harness.apply(damagedSnapshot());
    for (const Page page : shortcutPages()) {
        shown.harness.model->select(page);
        shown.harness.settle();
        EXPECT_FALSE(shown.window->grab().isNull());
        shown.harness.apply(damagedSnapshot());
        EXPECT_FALSE(shown.window->grab().isNull());
    }
}

} // namespace ostrivane
