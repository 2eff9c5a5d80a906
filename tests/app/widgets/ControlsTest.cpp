#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/Buttons.hpp"
#include "app/widgets/EvidenceList.hpp"
#include "app/widgets/FilterField.hpp"
#include "app/widgets/MessageDialog.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Stepper.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QDoubleSpinBox>
#include <QFocusFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

namespace ostrivane {

namespace {

class ControlsTest : public testing::Test {
    WidgetSetting setting;
};

QStringList threeChoices() {
    return {QStringLiteral("Live"), QStringLiteral("1H"), QStringLiteral("12H")};
}

TEST_F(ControlsTest, SegmentsFollowTheArrowsAsTheyAreSeen) {
    SegmentedControl control(QStringLiteral("Range"), threeChoices());
    showActive(control);
    QSignalSpy chosen(&control, &SegmentedControl::indexChosen);
    control.setIndex(1);
    EXPECT_EQ(chosen.count(), 0) << "only a person's choice is told";
    QTest::keyClick(&control, Qt::Key_Right);
    QTest::keyClick(&control, Qt::Key_Right); // already at the end
    EXPECT_EQ(control.index(), 2);
    EXPECT_EQ(chosen.count(), 1);
    QTest::keyClick(&control, Qt::Key_Home);
    EXPECT_EQ(control.index(), 0);
    control.setLayoutDirection(Qt::RightToLeft);
    QTest::keyClick(&control, Qt::Key_Left);
    EXPECT_EQ(control.index(), 1);
    QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint(4, control.height() / 2));
    EXPECT_EQ(control.index(), 2) << "mirrored, the last one stands at the left";
    control.setIndex(17);
    EXPECT_EQ(control.index(), 2);
}

std::vector<EvidenceRow> findings() {
    return {{"a", "cpu", Condition::elevated, QStringLiteral("First"), QStringLiteral("why"), {}, true},
            {"b", "cpu", Condition::info, QStringLiteral("Second"), QStringLiteral("why"), {}, false},
            {"c", "cpu", Condition::unknown, QStringLiteral("Third"), QStringLiteral("why"), {}, true}};
}

TEST_F(ControlsTest, FindingsAreWalkedAndActivated) {
    EvidenceList list(QStringLiteral("Insights"));
    list.set(findings());
    showActive(list);
    QSignalSpy activated(&list, &EvidenceList::activated);
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(activated.count(), 0) << "the second one leads nowhere";
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Down); // stays at the last
    QTest::keyClick(&list, Qt::Key_Return);
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated[0][0].value<std::string>(), "c");

    std::vector<EvidenceRow> fewer = findings();
    fewer.erase(fewer.begin());
    list.set(fewer);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(activated[1][0].value<std::string>(), "c") << "the place stays with its finding";

    list.set(findings());
    const int row = list.sizeHint().height() / 3;
    QTest::mouseClick(&list, Qt::LeftButton, {}, QPoint(50, row / 2));
    EXPECT_EQ(activated.back()[0].value<std::string>(), "a");
    const qsizetype before = activated.count();
    QTest::mousePress(&list, Qt::LeftButton, {}, QPoint(50, row / 2));
    QTest::mouseRelease(&list, Qt::LeftButton, {}, QPoint(50, row * 5 / 2));
    EXPECT_EQ(activated.count(), before) << "let go elsewhere, nothing is meant";
    list.set({});
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(activated.count(), before);
    EXPECT_EQ(list.focusPolicy(), Qt::NoFocus) << "there is nothing to be reached";
}

TEST_F(ControlsTest, TheHandIsShownOverFindingsThatLeadSomewhere) {
    EvidenceList list(QStringLiteral("Insights"));
    list.set(findings());
    showActive(list);
    const auto pointAt = [&](int row) {
        const QPointF at = list.accessibleItemRect(row).center();
        QMouseEvent event(QEvent::MouseMove, at, list.mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&list, &event);
        return list.cursor().shape();
    };
    EXPECT_EQ(pointAt(0), Qt::PointingHandCursor);
    EXPECT_EQ(pointAt(1), Qt::ArrowCursor);
    EXPECT_EQ(pointAt(2), Qt::PointingHandCursor);
    std::vector<EvidenceRow> others = findings();
    others[2].leadsSomewhere = false;
    list.set(others);
    EXPECT_EQ(list.cursor().shape(), Qt::ArrowCursor) << "the row below the pointer became another one";
}

TEST_F(ControlsTest, AStepperTellsOnlyWhatAPersonDid) {
    Stepper stepper(QStringLiteral("Threshold"), 0, 100);
    showActive(stepper);
    QSignalSpy chosen(&stepper, &Stepper::valueChosen);
    auto* box = stepper.findChild<QDoubleSpinBox*>();
    stepper.setUnit(QStringLiteral("%"));
    stepper.setDecimals(1);
    stepper.setValue(42.25);
    EXPECT_EQ(chosen.count(), 0);
    EXPECT_EQ(stepper.value(), 42.25) << "what is shown rounded is not rounded";
    box->stepUp();
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_NEAR(chosen[0][0].toDouble(), 43.2, 0.11);

    box->setFocus();
    box->findChild<QLineEdit*>()->selectAll();
    QTest::keyClicks(box, QStringLiteral("7"));
    EXPECT_EQ(chosen.count(), 1) << "half a number is none";
    QTest::keyClick(box, Qt::Key_Return);
    ASSERT_EQ(chosen.count(), 2);
    EXPECT_EQ(stepper.value(), 7);
}

TEST_F(ControlsTest, AStepperKeepsAValueOutsideOfItsRangeUntilItIsChanged) {
    Stepper stepper(QStringLiteral("Threshold"), 10, 100);
    QSignalSpy chosen(&stepper, &Stepper::valueChosen);
    auto* box = stepper.findChild<QDoubleSpinBox*>();
    stepper.setValue(250);
    EXPECT_EQ(box->value(), 250);
    box->stepDown();
    EXPECT_EQ(stepper.value(), 100);
    EXPECT_EQ(box->value(), 100);
    EXPECT_EQ(chosen.count(), 1);
    stepper.setValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(stepper.value(), 100);
}

TEST_F(ControlsTest, TheWheelOverAPageChangesNoSetting) {
    QWidget page;
    auto* column = new QVBoxLayout(&page);
    auto* first = new PushButton(QStringLiteral("First"));
    auto* stepper = new Stepper(QStringLiteral("Threshold"), 0, 100);
    column->addWidget(first);
    column->addWidget(stepper);
    showActive(page);
    first->setFocus();
    auto* box = stepper->findChild<QDoubleSpinBox*>();
    QWheelEvent wheel(QPointF(5, 5), box->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(box, &wheel);
    EXPECT_EQ(stepper->value(), 0);
}

/// Notes the keys that nothing inside wanted.
class KeyTaker final : public QWidget {
public:
    std::vector<int> keys;

protected:
    void keyPressEvent(QKeyEvent* event) override { keys.push_back(event->key()); }
};

TEST_F(ControlsTest, EscapeClearsAFilterAndThenGoesOn) {
    KeyTaker page;
    FilterField field(QStringLiteral("Filter"), &page);
    showActive(page, field.sizeHint());
    field.setFocus();
    QTest::keyClicks(&field, QStringLiteral("node"));
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_EQ(field.text(), QString());
    EXPECT_TRUE(page.keys.empty());
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_EQ(page.keys, std::vector<int>{Qt::Key_Escape});
    QTest::keyClicks(&field, QStringLiteral("node"));
    auto* clear = field.findChild<IconButton*>();
    ASSERT_TRUE(clear->isVisible());
    QTest::mouseClick(clear, Qt::LeftButton);
    EXPECT_EQ(field.text(), QString());
    EXPECT_FALSE(clear->isVisible());
}

TEST_F(ControlsTest, CancelIsTheFirstKeyWhereNothingCanBeUndone) {
    const auto focusOf = [](ButtonKind kind) {
        MessageDialog dialog({.heading = QStringLiteral("Clear all history?"),
                              .text = QStringLiteral("Samples are removed for good."),
                              .confirm = QStringLiteral("Clear"),
                              .kind = kind,
                              .cancel = QStringLiteral("Cancel")},
                             nullptr);
        const auto* button = qobject_cast<QPushButton*>(dialog.focusWidget());
        return button && button->isDefault() ? button->text() : QString();
    };
    EXPECT_EQ(focusOf(ButtonKind::confirming), QStringLiteral("Cancel"));
    EXPECT_EQ(focusOf(ButtonKind::primary), QStringLiteral("Clear"));
}

TEST_F(ControlsTest, ADialogTakesEscapeForCancelAndHoldsLongItems) {
    std::vector<QString> items(8, QString(4096, u'W'));
    MessageDialog dialog({.heading = QStringLiteral("Stop?"),
                          .text = QString(600, u'x'),
                          .items = items,
                          .confirm = QStringLiteral("Stop"),
                          .cancel = QStringLiteral("Cancel")},
                         nullptr);
    showActive(dialog, dialog.size());
    EXPECT_EQ(dialog.width(), 420);
    for (const QWidget* part : dialog.findChildren<QWidget*>())
        if (part->isVisible()) {
            EXPECT_TRUE(dialog.rect().contains(QRect(part->mapTo(&dialog, QPoint()), part->size())));
            EXPECT_GE(part->height(), part->minimumSizeHint().height());
        }
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(dialog.isVisible());
}

/// Small targets are missed; figures are in pixels at a base of 13.
TEST_F(ControlsTest, TargetsAreLargeEnough) {
    PushButton button(QStringLiteral("Go"));
    button.setSmall(true);
    IconButton icon("refresh", QStringLiteral("Refresh"));
    LinkButton link(QStringLiteral("1"));
    Switch toggle(QStringLiteral("On"));
    SegmentedControl segments(QStringLiteral("Range"), {QStringLiteral("1")});
    for (const QWidget* target : std::initializer_list<QWidget*>{&button, &icon, &link, &toggle, &segments}) {
        EXPECT_GE(target->sizeHint().width(), 24);
        EXPECT_GE(target->sizeHint().height(), 24);
        EXPECT_NE(target->focusPolicy() & Qt::TabFocus, 0) << "reached by the keyboard";
    }
    showActive(toggle);
    QTest::keyClick(&toggle, Qt::Key_Space);
    EXPECT_TRUE(toggle.isChecked());
}

TEST_F(ControlsTest, TheFocusRingIsForTheKeyboardAlone) {
    QWidget page;
    auto* column = new QVBoxLayout(&page);
    auto* first = new PushButton(QStringLiteral("First"));
    auto* second = new PushButton(QStringLiteral("Second"));
    column->addWidget(first);
    column->addWidget(second);
    showActive(page);
    const auto isRinged = [&] {
        const auto* ring = page.findChild<QFocusFrame*>();
        return ring && ring->isVisible();
    };
    QTest::mouseClick(first, Qt::LeftButton);
    EXPECT_TRUE(first->hasFocus());
    EXPECT_FALSE(isRinged());
    EXPECT_FALSE(Style::showsFocus(*first));
    QTest::keyClick(&page, Qt::Key_Tab);
    EXPECT_TRUE(second->hasFocus());
    EXPECT_TRUE(isRinged());
    EXPECT_TRUE(Style::showsFocus(*second));
    QTest::mouseClick(second, Qt::LeftButton);
    EXPECT_FALSE(isRinged());
}

} // namespace

} // namespace ostrivane
