#include "app/widgets/BulletList.hpp"
#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/RankList.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/TotalsList.hpp"
#include "app/widgets/Type.hpp"

#include <QApplication>
#include <QEnterEvent>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace ostrivane {

namespace {

std::vector<RankRow> rankRows(int count) {
    std::vector<RankRow> rows;
    for (int row = 0; row < count; ++row)
        rows.push_back({.key = std::to_string(row), .name = "App", .figure = QString::number(row)});
    return rows;
}

/// Each figure as wide as a size can be.
std::vector<TotalsRow> wideTotals() {
    const QString size = QStringLiteral("312.45 GB");
    return {{.name = QStringLiteral("Received"), .figures = {size, size, size}}};
}

} // namespace

TEST(RowList, activatesTheRowUnderThePointerAndTheOneOfTheKeyboard) {
    RankList list(QStringLiteral("Apps"), 7, Series::s1);
    list.set(rankRows(3));
    list.resize(300, list.sizeHint().height());
    list.show();
    QSignalSpy activated(&list, &RowList::activated);
    const QRect third = list.accessibleItemRect(2);
    QTest::mouseClick(&list, Qt::LeftButton, {}, third.center());
    QTest::mouseClick(&list, Qt::LeftButton, {}, third.center() + QPoint(0, third.height())); // below the rows
    QTest::mouseClick(&list, Qt::RightButton, {}, third.center());
    QTest::keyClick(&list, Qt::Key_Down); // there is no fourth
    QTest::keyClick(&list, Qt::Key_Space);
    QTest::keyClick(&list, Qt::Key_Home);
    QTest::keyClick(&list, Qt::Key_Enter);
    std::vector<int> rows;
    for (const auto& one : activated)
        rows.push_back(one.front().toInt());
    EXPECT_EQ(rows, (std::vector{2, 2, 0}));

    list.set(rankRows(1));
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(activated.back().front().toInt(), 0);
    list.set({});
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(activated.size(), 4);
    EXPECT_EQ(list.accessibleCurrentItem(), -1);
}

TEST(RowList, isHeldWhileSomebodyPointsAtIt) {
    RankList list(QStringLiteral("Apps"), 7, Series::s1);
    list.set(rankRows(3));
    list.show();
    EXPECT_FALSE(list.isHeld());
    QEnterEvent enter({5, 5}, {5, 5}, {5, 5});
    QApplication::sendEvent(&list, &enter);
    EXPECT_TRUE(list.isHeld());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&list, &leave);
    EXPECT_FALSE(list.isHeld());
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_TRUE(list.isHeld());
    list.hide();
    EXPECT_FALSE(list.isHeld());
}

TEST(TotalsList, leavesColumnsOutRatherThanCutFigures) {
    TotalsList list(QStringLiteral("Totals"),
                    {QStringLiteral("Today"), QStringLiteral("7 days"), QStringLiteral("30 days")});
    list.set(wideTotals());
    const QFont font = Type::font(TypeRole::table);
    const TotalsRow row = wideTotals().front();
    const int column = static_cast<int>(std::ceil(Numbers::width(font, row.figures[0]))) + Type::px(10); // and a gap
    const int rest = Paint::textWidth(font, row.name) + 2 * Type::px(14);                                // at the sides
    for (const int columns : {3, 2, 1}) {
        list.resize(rest + columns * column, 60);
        EXPECT_EQ(list.visibleColumns(), columns) << font.family().toStdString();
    }
    list.resize(40, 60);
    EXPECT_EQ(list.visibleColumns(), 1);
    EXPECT_EQ(list.accessibleItemText(0),
              QStringLiteral("Received, Today: 312.45 GB, 7 days: 312.45 GB, 30 days: 312.45 GB"));
}

TEST(TotalsList, cutsHeadsAheadOfLeavingColumnsOut) {
    TotalsList list(QStringLiteral("Totals"), {QStringLiteral("Today"), QString(40, u'x'), QStringLiteral("30 days")});
    const QString none = QStringLiteral("0 B");
    list.set({{.name = QStringLiteral("Sent"), .figures = {none, none, none}}});
    list.resize(240, 60);
    EXPECT_EQ(list.visibleColumns(), 3);
}

TEST(RankList, hasItsBarsInTheNarrowestWindow) {
    RankList list(QStringLiteral("Apps"), 1, Series::s1);
    list.set({{.key = "a", .name = "App", .figure = QStringLiteral("1 GB"), .share = 1}});
    list.resize(210, list.sizeHint().height()); // half of a card of a window of 960 pixels
    const QImage image = list.grab().toImage();
    int coloured = 0;
    for (int x = 60; x < image.width(); ++x)
        coloured += image.pixelColor(x, image.height() / 2) == Theme::current().s1 ? 1 : 0;
    EXPECT_GT(coloured, 30);
}

TEST(BulletList, asksForRoomOnlyWhereItsLinesTakeMore) {
    QWidget parent;
    BulletList list(&parent);
    list.resize(200, 100);
    list.set({QStringLiteral("Load average 4.21 (1 min).")});
    const int oneLine = list.heightForWidth(200);
    list.set({QStringLiteral("Load average 4.25 (1 min).")});
    EXPECT_EQ(list.heightForWidth(200), oneLine);
    EXPECT_EQ(list.accessibleName(), QStringLiteral("Load average 4.25 (1 min)."));
    EXPECT_GT(list.heightForWidth(60), oneLine);
    list.set({QString(100'000, u'W')});
    EXPECT_LT(list.heightForWidth(200), 2000);
}

} // namespace ostrivane
