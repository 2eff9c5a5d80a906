#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/Badge.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/MetricTile.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Stepper.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QStyleOptionSpinBox>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace ostrivane {

namespace {

/// What people set who need large lettering. Nothing may be cut off by it.
class Lettering : public testing::TestWithParam<double> {
protected:
    Lettering() { Type::setBase(GetParam()); }

private:
    WidgetSetting setting;
};

/// Whether a widget in the size that it asks for leaves its outermost pixels unpainted by lettering: lettering that
/// reaches them is cut.
bool leavesItsEdge(QWidget& widget, const QColor& ink) {
    widget.resize(widget.sizeHint());
    const QImage image = widget.grab().toImage();
    for (int x = 0; x < image.width(); ++x)
        if (image.pixelColor(x, 0) == ink || image.pixelColor(x, image.height() - 1) == ink)
            return false;
    for (int y = 0; y < image.height(); ++y)
        if (image.pixelColor(0, y) == ink || image.pixelColor(image.width() - 1, y) == ink)
            return false;
    return true;
}

TEST_P(Lettering, FitsWhereItStands) {
    const Theme& theme = Theme::current();
    PushButton button(QStringLiteral("ÄjMg Start Session"));
    button.setIconName("play");
    EXPECT_TRUE(leavesItsEdge(button, theme.text));
    EXPECT_GE(button.sizeHint().width(),
              Paint::textWidth(Type::font(TypeRole::body), button.text()) + button.height() / 2);
    PushButton small(QStringLiteral("ÄjMg"));
    small.setSmall(true);
    EXPECT_TRUE(leavesItsEdge(small, theme.text));
    Badge badge;
    badge.set(Condition::good, QStringLiteral("ÄjMg Healthy"));
    EXPECT_TRUE(leavesItsEdge(badge, theme.good.text));
    SegmentedControl segments(QStringLiteral("Range"), {QStringLiteral("ÄjMg"), QStringLiteral("12H")});
    EXPECT_TRUE(leavesItsEdge(segments, theme.text));
    for (const TypeRole role : {TypeRole::hero, TypeRole::body, TypeRole::statValue, TypeRole::pageTitle}) {
        TextLabel label(role);
        label.setText(QStringLiteral("Mg 31%"));
        EXPECT_GE(label.sizeHint().height(), QFontMetrics(Type::font(role)).tightBoundingRect(label.text()).height());
        label.resize(label.sizeHint());
        label.show();
        EXPECT_EQ(label.toolTip(), QString()) << "whole in the size it asks for";
    }
}

TEST_P(Lettering, AFieldShowsItsLargestValueWithItsUnit) {
    Stepper stepper(QStringLiteral("Threshold"), 0, 1000);
    stepper.setUnit(QStringLiteral("MB/s"));
    stepper.setValue(1000);
    showActive(stepper);
    auto* field = stepper.findChild<QLineEdit*>();
    EXPECT_GE(field->width(), field->fontMetrics().horizontalAdvance(field->text()));
    EXPECT_EQ(field->text(), QStringLiteral("1000 MB/s"));
}

TEST_P(Lettering, APageOfSixHundredPixelsHoldsItsParts) {
    QWidget page;
    auto* column = new QVBoxLayout(&page);
    auto* banner = new Banner;
    banner->set(Condition::elevated, QStringLiteral("Memory needs attention"),
                QStringLiteral("The second line explains what is going on, and is long enough that it has to wrap."));
    banner->setAction(QStringLiteral("Stop All…"));
    auto* empty = new EmptyState("page.projects");
    empty->set(
        QStringLiteral("No projects running"),
        QStringLiteral("Start a development server or open a project folder in a terminal, and it shows up here."),
        QStringLiteral("Open Settings"));
    column->addWidget(banner);
    column->addWidget(empty);
    page.resize(600, column->totalHeightForWidth(600));
    page.show();
    QCoreApplication::processEvents();
    for (const TextLabel* label : page.findChildren<TextLabel*>()) {
        if (!label->isVisible())
            continue;
        EXPECT_GE(label->height(), label->heightForWidth(label->width())) << label->text().toStdString();
        EXPECT_TRUE(page.rect().contains(QRect(label->mapTo(&page, QPoint()), label->size())));
    }
}

INSTANTIATE_TEST_SUITE_P(Bases, Lettering, testing::Values(12.0, 13.0, 26.0));

} // namespace

} // namespace ostrivane
