#include "app/widgets/Style.hpp"
#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/StyleParts.hpp"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSpinBox>
#include <QStyleOption>

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

namespace ostrivane {

namespace {

class StyleTest : public testing::Test {
    WidgetSetting setting;
};

TEST_F(StyleTest, TheThreeStatesOfATickDiffer) {
    QCheckBox box;
    box.setTristate(true);
    std::vector<QImage> states;
    for (const Qt::CheckState state : {Qt::Unchecked, Qt::PartiallyChecked, Qt::Checked}) {
        box.setCheckState(state);
        states.push_back(box.grab().toImage());
    }
    EXPECT_NE(states[0], states[1]);
    EXPECT_NE(states[1], states[2]);
    box.setEnabled(false);
    EXPECT_NE(box.grab().toImage(), states[2]);
    EXPECT_GE(box.sizeHint().height(), 24);
}

TEST_F(StyleTest, StandardControlsTakeTheirColoursFromTheTheme) {
    QComboBox combo;
    combo.addItem(QStringLiteral("System"));
    QLineEdit field;
    QSpinBox spin;
    QMenu menu;
    menu.addAction(QStringLiteral("Show Details"));
    for (const Theme* theme : {&Theme::light(), &Theme::dark()}) {
        Theme::use(*theme);
        for (QWidget* widget : std::initializer_list<QWidget*>{&combo, &field, &spin, &menu}) {
            widget->resize(widget->sizeHint().expandedTo(QSize(120, 28)));
            const QImage image = widget->grab().toImage();
            const QPoint inside(3, image.height() / 2); // ahead of all lettering
            EXPECT_EQ(image.pixelColor(inside), theme->card) << widget->metaObject()->className();
            EXPECT_EQ(image.pixelColor(0, image.height() / 2), theme->border) << widget->metaObject()->className();
        }
    }
}

TEST_F(StyleTest, AScrollBarShowsWhereItIs) {
    QStyleOptionSlider option;
    option.rect = QRect(0, 0, 11, 200);
    option.orientation = Qt::Vertical;
    option.minimum = 0;
    option.maximum = 300;
    option.pageStep = 100;
    const auto thumb = [&](int position) {
        option.sliderPosition = position;
        return StyleParts::scrollBarPart(option, QStyle::SC_ScrollBarSlider);
    };
    EXPECT_EQ(thumb(0), QRect(0, 0, 11, 50)) << "a quarter is in view";
    EXPECT_EQ(thumb(300).bottom(), 199);
    EXPECT_EQ(thumb(150).center().y(), 99);
    option.maximum = std::numeric_limits<int>::max(); // a very long list
    EXPECT_GE(thumb(0).height(), 24);
    EXPECT_EQ(thumb(option.maximum).bottom(), 199);
    const QRect before = StyleParts::scrollBarPart(option, QStyle::SC_ScrollBarSubPage);
    EXPECT_EQ(before.height() + thumb(option.maximum).height(), 200);
    option.orientation = Qt::Horizontal;
    option.rect = QRect(0, 0, 200, 11);
    option.direction = Qt::RightToLeft;
    EXPECT_EQ(thumb(0).right(), 199) << "mirrored, it begins at the right";
}

TEST_F(StyleTest, AMenuHoldsTextKeysAndArrows) {
    QMenu menu;
    menu.addAction(QStringLiteral("Show"));
    const int plain = menu.sizeHint().width();
    menu.actions().front()->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+P")));
    const int withKeys = menu.sizeHint().width();
    EXPECT_GT(withKeys, plain + menu.fontMetrics().horizontalAdvance(QStringLiteral("Ctrl+Shift+P")));
    menu.addAction(QStringLiteral("Tick"))->setCheckable(true);
    EXPECT_GT(menu.sizeHint().width(), withKeys);
    EXPECT_GE(menu.actionGeometry(menu.actions().front()).height(), 24);
}

} // namespace

} // namespace ostrivane
