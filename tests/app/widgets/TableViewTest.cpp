#include "app/widgets/TableView.hpp"

#include "app/widgets/ColumnWidths.hpp"
#include "app/widgets/RowsModel.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableHead.hpp"
#include "app/widgets/Type.hpp"
#include "tests/app/model/MemoryKeyValueStore.hpp"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPaintEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <numeric>
#include <utility>

namespace ostrivane {
namespace {

struct Entry {
    int id = 0;
    double value = 0;
    QString words = QStringLiteral("some words");
};

/// Adds up what a widget is asked to paint.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(QWidget* watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
    QRegion region;
};

/// How often a window was asked to be painted.
class RequestCount final : public QObject {
public:
    explicit RequestCount(QWidget& window) { window.installEventFilter(this); }
    /// Since the last call.
    int taken() { return std::exchange(count, 0); }
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::UpdateRequest ? 1 : 0;
        return false;
    }

private:
    int count = 0;
};

class TableViewTest : public ::testing::Test {
protected:
    explicit TableViewTest() { open(); }

    void open() {
        view = std::make_unique<TableView>("entries", QStringLiteral("Entries"), &store);
        model = std::make_unique<RowsModel<Entry, int>>(
            std::vector<TableColumn<Entry>>{
                {.id = "id",
                 .title = QStringLiteral("Name"),
                 .isHideable = false,
                 .text = [](const Entry& entry) { return QString::number(entry.id); },
                 .sortKey = [](const Entry& entry) { return SortKey(static_cast<double>(entry.id)); }},
                {.id = "value",
                 .title = QStringLiteral("Value"),
                 .isNumeric = true,
                 .width = 100,
                 .text = [](const Entry& entry) { return QString::number(entry.value); },
                 .sortKey = [](const Entry& entry) { return SortKey(entry.value); },
                 .sortsDescendingFirst = true},
                {.id = "words",
                 .title = QStringLiteral("Words"),
                 .width = 150,
                 .text = [](const Entry& entry) { return entry.words; }}},
            [](const Entry& entry) { return entry.id; });
        model->sort(1, Qt::DescendingOrder);
        view->setRows(model.get());
        view->resize(600, 300);
        view->show();
        QApplication::processEvents();
        pointer(false); // wherever it is
    }

    /// Entry `id` has the value `values[id]`.
    void assign(const std::vector<double>& values) {
        std::vector<Entry> entries;
        for (std::size_t id = 0; id < values.size(); ++id)
            entries.push_back({static_cast<int>(id), values[id]});
        model->assign(std::move(entries), nullptr);
        QApplication::processEvents();
    }
    std::vector<double> rising(std::size_t count) {
        std::vector<double> values(count);
        std::iota(values.begin(), values.end(), 0);
        return values;
    }
    /// What waits to be painted is painted.
    void paint() {
        QEvent request(QEvent::UpdateRequest);
        QApplication::sendEvent(view.get(), &request);
    }
    void pointer(bool inside) {
        QEvent event(inside ? QEvent::Enter : QEvent::Leave);
        QApplication::sendEvent(view.get(), &event);
    }

    std::shared_ptr<MemoryKeyValueStore::Content> stored = std::make_shared<MemoryKeyValueStore::Content>();
    MemoryKeyValueStore store{stored};
    std::unique_ptr<RowsModel<Entry, int>> model;
    std::unique_ptr<TableView> view;
};

TEST_F(TableViewTest, SelectionAndScrollPositionOutliveATick) {
    assign(rising(100));
    view->selectRow(*model->indexOf(60));
    view->verticalScrollBar()->setValue(777);
    const QSignalSpy moved(view.get(), &TableView::selectionMoved);
    std::vector<double> values = rising(120);
    values[60] = 1000;
    values[3] = 2000;
    assign(values);
    EXPECT_EQ(model->id(view->selectedRow()), 60);
    EXPECT_EQ(view->selectedRow(), 1);
    EXPECT_EQ(model->id(view->currentIndex().row()), 60);
    EXPECT_EQ(view->verticalScrollBar()->value(), 777);
    EXPECT_EQ(moved.size(), 0) << "the same process is still the selected one";
}

TEST_F(TableViewTest, WhatIsSelectedIsInViewAndStaysThere) {
    const auto isInView = [this] { return view->viewport()->rect().contains(view->visualRect(view->currentIndex())); };
    std::vector<Entry> entries;
    for (const double value : rising(100))
        entries.push_back({static_cast<int>(value), value});
    model->assign(std::move(entries), nullptr);
    view->selectRow(99);
    EXPECT_TRUE(isInView()) << "though the row has just come";
    const auto resize = [this](int height) {
        view->resize(600, height);
        QApplication::processEvents();
    };
    resize(150);
    EXPECT_TRUE(isInView());
    resize(300);
    EXPECT_TRUE(isInView());

    view->verticalScrollBar()->setValue(0);
    resize(150);
    EXPECT_EQ(view->verticalScrollBar()->value(), 0) << "whoever scrolled away stays there";
    view->selectRow(-1);
    view->selectRow(99);
    EXPECT_TRUE(isInView()) << "chosen again, it is looked for";
}

TEST_F(TableViewTest, ASelectionGoesWithItsRow) {
    assign(rising(5));
    view->selectRow(*model->indexOf(4));
    QSignalSpy moved(view.get(), &TableView::selectionMoved);
    pointer(true);
    assign(rising(4));
    EXPECT_EQ(model->id(view->selectedRow()), 4) << "while the order is held it stays, faded";
    pointer(false);
    EXPECT_EQ(view->selectedRow(), -1);
    ASSERT_EQ(moved.size(), 1) << "no neighbour is selected in its place";
    EXPECT_EQ(moved.front().front().toInt(), -1);
}

TEST_F(TableViewTest, HoldsTheOrderForPointerKeysAndMenus) {
    assign(rising(3));
    QSignalSpy held(view.get(), &TableView::orderHeldChanged);
    pointer(true);
    assign({9, 1, 2});
    EXPECT_EQ(model->indexOf(0), 2);
    pointer(false);
    EXPECT_EQ(model->indexOf(0), 0);
    EXPECT_EQ(held.size(), 2);

    QMenu menu;
    QObject::connect(view.get(), &TableView::menuWanted, &menu, [&](int, QPoint at) { menu.popup(at); });
    QContextMenuEvent asks(QContextMenuEvent::Mouse, QPoint(20, 10), view->viewport()->mapToGlobal(QPoint(20, 10)));
    QApplication::sendEvent(view->viewport(), &asks);
    EXPECT_EQ(view->selectedRow(), 0) << "the menu is that of the row below the pointer";
    EXPECT_TRUE(view->isOrderHeld());
    menu.close();
    EXPECT_FALSE(view->isOrderHeld());

    QTest::keyClick(view.get(), Qt::Key_Down);
    EXPECT_TRUE(view->isOrderHeld());
    view->hide();
    EXPECT_FALSE(view->isOrderHeld()) << "nobody looks";
}

TEST_F(TableViewTest, PaintsOnlyCellsThatShowSomethingElse) {
    for (int turn = 0; turn < 3; ++turn) { // the scroll bar appears, which takes a turn
        assign(rising(50));
        paint();
    }
    PaintWatch watch(view->viewport());
    assign(rising(50));
    paint();
    EXPECT_TRUE(watch.region.isEmpty());
    std::vector<double> values = rising(50);
    values[48] = 48.5; // the second row, where it stays
    assign(values);
    paint();
    EXPECT_EQ(watch.region.boundingRect(), view->visualRect(model->index(1, 1)));
    watch.region = {};
    values[2] = 2.5; // far below
    assign(values);
    paint();
    EXPECT_TRUE(watch.region.isEmpty());
}

TEST_F(TableViewTest, FiguresGoOnChangingHoweverFarItWasScrolled) {
    constexpr std::size_t count = 700;
    std::vector<double> values = rising(count);
    assign(values);
    paint();
    pointer(true); // every row keeps its place
    PaintWatch watch(view->viewport());
    QScrollBar* bar = view->verticalScrollBar();
    for (int place = 0; place < bar->maximum(); place += 7 * view->rowHeight(0)) {
        bar->setValue(place);
        paint();
        watch.region = {};
        for (double& value : values)
            value += 0.5;
        assign(values);
        paint();
        const int last = view->rowAt(view->viewport()->height() - 1);
        for (int row = view->rowAt(0); row <= last; ++row) {
            const QRect cell = view->visualRect(model->index(row, 1)) & view->viewport()->rect();
            ASSERT_TRUE(QRegion(cell).subtracted(watch.region).isEmpty()) << "row " << row << " at " << place;
        }
    }
}

TEST_F(TableViewTest, WhatThePageHidesCostsNoPainting) {
    QWidget page;
    page.resize(600, 200);
    TableView* below = view.release();
    below->setParent(&page);
    below->move(0, 250);
    below->show();
    page.show();
    for (int turn = 0; turn < 3; ++turn)
        assign(rising(50));
    RequestCount requests(page);
    std::vector<double> values = rising(50);
    values[48] = 48.5;
    assign(values);
    EXPECT_EQ(requests.taken(), 0);
    below->move(0, 0);
    QApplication::processEvents();
    requests.taken();
    assign(rising(50));
    EXPECT_GT(requests.taken(), 0) << "now it is seen";
}

TEST_F(TableViewTest, HeadsSortByKeyboardInTheColumnsOwnOrderFirst) {
    assign({5, 7, 6});
    QHeaderView* head = view->horizontalHeader();
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(view.get())->text(QAccessible::Name) ==
                QStringLiteral("Entries"));
    EXPECT_FALSE(head->accessibleName().isEmpty());
    head->setFocus(Qt::TabFocusReason);
    QTest::keyClick(head, Qt::Key_Return);
    EXPECT_EQ(model->sortColumn(), 0);
    EXPECT_EQ(model->sortOrder(), Qt::AscendingOrder);
    QTest::keyClick(head, Qt::Key_Right);
    QTest::keyClick(head, Qt::Key_Space);
    EXPECT_EQ(model->sortColumn(), 1);
    EXPECT_EQ(model->sortOrder(), Qt::DescendingOrder);
    QTest::keyClick(head, Qt::Key_Space);
    EXPECT_EQ(model->sortOrder(), Qt::AscendingOrder);
    QTest::keyClick(head, Qt::Key_Right);
    QTest::keyClick(head, Qt::Key_Space);
    EXPECT_EQ(model->sortColumn(), 1) << "by words nothing can be sorted";
    EXPECT_EQ(model->id(0), 0);
}

TEST_F(TableViewTest, KeepsWidthsAndHiddenColumns) {
    QHeaderView* head = view->horizontalHeader();
    const int all = head->length();
    head->resizeSection(1, 130); // as by its edge
    EXPECT_EQ(head->sectionSize(2), 150 - 30) << "the next column gives what this one takes";
    EXPECT_EQ(head->length(), all);
    QTest::mouseRelease(head->viewport(), Qt::LeftButton);

    QContextMenuEvent asks(QContextMenuEvent::Mouse, QPoint(5, 5), head->viewport()->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(head->viewport(), &asks);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    ASSERT_EQ(menu->actions().size(), 2) << "a column that names the row cannot be hidden";
    menu->actions().at(1)->trigger();
    EXPECT_TRUE(view->isColumnHidden(2));
    menu->close();

    open();
    EXPECT_TRUE(view->isColumnHidden(2));
    EXPECT_EQ(view->columnWidth(1), 130);
    EXPECT_EQ(view->horizontalHeader()->length(), view->viewport()->width());
    view->setNarrowHides({"value"});
    EXPECT_FALSE(view->isColumnHidden(1));
    view->setNarrow(true);
    EXPECT_TRUE(view->isColumnHidden(1));
    view->setNarrow(false);
    EXPECT_FALSE(view->isColumnHidden(1));
    EXPECT_TRUE(view->isColumnHidden(2)) << "what the user hid stays hidden";
}

TEST_F(TableViewTest, TakesDamagedKeepsakesForNone) {
    for (const char* damaged :
         {"", "{", "[]", "null", R"({"widths":[1],"hidden":{"a":1}})", R"({"widths":{"value":"wide"},"hidden":[7]})",
          R"({"widths":{"value":-5,"words":1e99,"none":50},"hidden":["id","none"]})"}) {
        store.setJSON("table.entries", damaged);
        open();
        EXPECT_EQ(view->columnWidth(1), 100) << damaged;
        EXPECT_EQ(view->columnWidth(2), 150) << damaged;
        EXPECT_FALSE(view->isColumnHidden(0)) << damaged;
    }
}

TEST_F(TableViewTest, DrawsOddTextsAtDoubleLetteringFromRightToLeft) {
    Type::setBase(26);
    QApplication::setLayoutDirection(Qt::RightToLeft);
    open();
    std::vector<Entry> entries;
    for (const QString& odd : {QString(), QString(4096, u'W'), QString(4096, QChar(0x202E)),
                               QString(4096, QChar(0x301)), QStringLiteral("a\nb\tc"), QStringLiteral("<b>x</b>")})
        entries.push_back({static_cast<int>(entries.size()), 1e308, odd});
    model->assign(entries, nullptr);
    EXPECT_FALSE(view->grab().isNull());
    EXPECT_EQ(view->rowHeight(0), 56);
    Type::setBase(13);
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST(ColumnWidths, GiveWayInProportionAndFillTheRoom) {
    const std::vector<ColumnWish> wishes{{0}, {90, true}, {98, true}, {128, true}, {137}, {226}};
    const auto widths = [&](int available) { return columnWidths(wishes, available, 200, 120); };
    const auto sum = [](const std::vector<int>& all) { return std::accumulate(all.begin(), all.end(), 0); };
    EXPECT_EQ(widths(982), (std::vector<int>{303, 90, 98, 128, 137, 226}));
    EXPECT_EQ(sum(widths(730)), 730);
    EXPECT_NEAR(widths(730)[0], 200, 2);
    EXPECT_LT(widths(730)[5], 226);
    EXPECT_GE(widths(500)[1], 64) << "figures must fit";
    EXPECT_GT(sum(widths(300)), 300) << "then it scrolls sideways";
    EXPECT_EQ(widths(300)[0], 120);
    EXPECT_EQ(columnWidths({{50}, {60}}, 200, 200, 120), (std::vector<int>{50, 150}));
    EXPECT_TRUE(columnWidths({}, 200, 200, 120).empty());
}

} // namespace
} // namespace ostrivane
