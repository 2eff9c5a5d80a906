#include "app/window/MainWindow.hpp"
#include "app/pages/Links.hpp"
#include "app/pages/WelcomeSheet.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/RowsModel.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"
#include "app/window/MainMenu.hpp"
#include "app/window/Sidebar.hpp"
#include "tests/app/pages/PageHarness.hpp"
#include "tests/app/pages/Widgets.hpp"

#include <QAction>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace ostrivane {

namespace {

/// A window over a recorded machine, shown and seen.
struct ShownWindow {
    explicit ShownWindow(const char* recording = virtualMachine) {
        harness.play(recording);
        window.emplace(harness.page, MenuActions{}, [this] { return mayClose; });
        window->setMinimumSize(960, 620); // else it grows with what is in it
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

/// Lays out all that is due, and what that asks for.
void layOut() {
    for (int round = 0; round < 10; ++round)
        QCoreApplication::processEvents();
}

/// What is seen of a kind in a page's header.
template <class Kind>
std::vector<const Kind*> inHeader(const PageView& page) {
    std::vector<const Kind*> found;
    for (const Kind* widget : page.findChildren<Kind*>())
        if (page.headerHas(widget) && widget->isVisible())
            found.push_back(widget);
    return found;
}

QRect placeIn(const PageView& page, const QWidget& widget) {
    return {widget.mapTo(&page, QPoint()), widget.size()};
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
    const auto says = [&](const char* words) {
        const auto banners = shown.window->findChildren<Banner*>();
        return std::ranges::any_of(banners, [&](const Banner* banner) {
            return banner->isVisible() && banner->accessibleLabel().contains(QLatin1String(words));
        });
    };
    EXPECT_FALSE(says("history"));
    shown.window->showHistoryProblem("database is locked");
    EXPECT_TRUE(says("database is locked"));
    shown.window->showHistoryProblem(std::nullopt);
    EXPECT_FALSE(says("history"));
}

TEST(MainWindow, findsTheFilterByASlashFromListAndTable) {
    ShownWindow shown(developer);
    shown.harness.model->select(Page::processes);
    PageView& page = *shown.window->currentPage();
    ASSERT_TRUE(qobject_cast<TableView*>(shown.window->focusWidget()));
    QTest::keyClick(shown.window->focusWidget(), Qt::Key_Slash);
    EXPECT_EQ(shown.window->focusWidget(), page.filterField());
    for (auto* list : shown.window->findChild<Sidebar*>()->findChildren<QListView*>()) {
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Slash);
        EXPECT_EQ(shown.window->focusWidget(), page.filterField());
    }
    EXPECT_TRUE(qobject_cast<QLineEdit*>(page.filterField())->text().isEmpty());
}

TEST(MainWindow, closesADetailByEscapeOnceTheFilterIsEmpty) {
    ShownWindow shown(developer);
    AppModel& model = *shown.harness.model;
    const ApplicationSnapshot& app = shown.harness.state().snapshot->applications.front();
    for (const Page page : {Page::processes, Page::applications}) {
        model.select(page);
        model.selectProcess(app.pids.front());
        model.selectApp(app.key);
        auto* filter = qobject_cast<QLineEdit*>(shown.window->currentPage()->filterField());
        const auto isOpen = [&] {
            return page == Page::processes ? model.selectedProcessPID().has_value()
                                           : model.selectedAppKey().has_value();
        };
        filter->setText(QStringLiteral("a"));
        QTest::keyClick(filter, Qt::Key_Escape);
        EXPECT_TRUE(filter->text().isEmpty());
        EXPECT_TRUE(isOpen());
        QTest::keyClick(filter, Qt::Key_Escape);
        EXPECT_FALSE(isOpen()) << rawValue(page);
    }
}

TEST(MainWindow, leadsToARowThatWasFilteredOut) {
    ShownWindow shown(developer);
    AppModel& model = *shown.harness.model;
    const auto filter = [&] { return qobject_cast<QLineEdit*>(shown.window->currentPage()->filterField()); };
    const auto table = [&](const char* name) { return named<TableView>(*shown.window->currentPage(), name); };
    const ApplicationSnapshot& app = shown.harness.state().snapshot->applications.front();
    const QString name = text(app.name);
    const QString pid = QString::number(app.pids.front());
    const QString nothing = QStringLiteral("no such thing");

    model.select(Page::applications);
    model.selectApp(app.key);
    filter()->setText(nothing);
    model.select(Page::processes);
    model.selectProcess(app.pids.front());
    filter()->setText(nothing);
    for (const Page page : {Page::applications, Page::processes}) {
        model.select(page);
        EXPECT_EQ(filter()->text(), nothing) << "who only looks in again finds it as it was";
    }

    openApp(model, app.key);
    EXPECT_TRUE(filter()->text().isEmpty());
    const TableView& applications = *table("Applications");
    ASSERT_GE(applications.selectedRow(), 0);
    EXPECT_EQ(applications.rows()->cell(applications.selectedRow(), 0).text, name);

    TableView& members = *table("Processes");
    for (int row = 0; row < members.rows()->rowCount(); ++row)
        if (members.rows()->cell(row, 1).text == pid) {
            members.selectRow(row);
            break;
        }
    QTest::keyClick(&members, Qt::Key_Return);
    EXPECT_EQ(shown.window->currentPage()->page(), Page::processes);
    EXPECT_TRUE(filter()->text().isEmpty());
    const TableView& processes = *table("Processes");
    ASSERT_GE(processes.selectedRow(), 0);
    EXPECT_EQ(processes.rows()->cell(processes.selectedRow(), 1).text, pid);
}

TEST(MainWindow, movesTheFocusAroundByF6) {
    ShownWindow shown;
    shown.harness.model->select(Page::processes);
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
    shown.window->setMinimumSize(320, 240); // as on a small screen
    for (const Page page : {Page::overview, Page::cpu}) {
        shown.harness.model->select(page);
        LayoutCount layouts(*shown.window->currentPage());
        for (int width = 700; width < 1200; width += 7) {
            shown.window->resize(width, 620);
            layOut();
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
    shown.window->setMinimumSize(320, 240); // as on a small screen
    shown.window->resize(1008, 536);        // of a screen of 1024 x 600
    for (const Page page : shortcutPages()) {
        shown.harness.model->select(page);
        shown.harness.settle();
        layOut();
        EXPECT_FALSE(shown.window->grab().isNull());
        const PageView& view = *shown.window->currentPage();
        const auto labels = inHeader<TextLabel>(view);
        const auto heading = std::ranges::find(labels, view.accessibleName(), &TextLabel::text);
        ASSERT_NE(heading, labels.end()) << rawValue(page);
        const auto controls = inHeader<SegmentedControl>(view);
        for (const SegmentedControl* control : controls)
            EXPECT_LE(placeIn(view, *control).right(), view.width()) << rawValue(page);
        if (page == Page::cpu || page == Page::history) { // whose ranges are too wide to stand beside it
            ASSERT_EQ(controls.size(), 1U) << rawValue(page);
            EXPECT_GT(placeIn(view, *controls.front()).top(), placeIn(view, **heading).bottom()) << rawValue(page);
        }
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
                layOut();
                EXPECT_FALSE(shown.window->grab().isNull()) << rawValue(page);
                ASSERT_EQ(shown.window->size(), size);
                const PageView& view = *shown.window->currentPage();
                EXPECT_LE(view.minimumSizeHint().width(), view.width()) << rawValue(page) << " at " << size.width();
                expectNothingCutOff(view);
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
