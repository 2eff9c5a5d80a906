#include "app/widgets/Scrolling.hpp"
#include "tests/app/widgets/WidgetHarness.hpp"

#include <QPainter>
#include <QScrollArea>

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

class RedGround final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::red); }
};

TEST(Scrolling, AddsNeitherAGroundNorAStopOfTheFocus) {
    const WidgetSetting setting;
    RedGround parent;
    auto* content = new QWidget;
    content->setMinimumHeight(500);
    QScrollArea* area = scrolling(content, &parent);
    area->resize(200, 100);
    showActive(parent, {200, 100});
    EXPECT_EQ(parent.grab().toImage().pixelColor(50, 50), QColor(Qt::red));
    EXPECT_EQ(content->width(), area->viewport()->width()) << "it is as wide as there is room";
    EXPECT_EQ(area->focusPolicy(), Qt::NoFocus);
}

} // namespace

} // namespace ostrivane
