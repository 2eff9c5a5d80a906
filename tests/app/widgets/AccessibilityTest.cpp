#include "app/widgets/Accessibility.hpp"
#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/Badge.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Bar.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/EvidenceList.hpp"
#include "app/widgets/Gauge.hpp"
#include "app/widgets/KeyValueList.hpp"
#include "app/widgets/MetricTile.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/Stepper.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QDoubleSpinBox>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <initializer_list>

namespace ostrivane {

namespace {

class AccessibilityTest : public testing::Test {
protected:
    AccessibilityTest() { installAccessibility(); }

    static std::string told(QWidget& widget, QAccessible::Text kind) {
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&widget);
        return interface ? interface->text(kind).toStdString() : "no interface";
    }

private:
    WidgetSetting setting;
};

TEST_F(AccessibilityTest, WhatIsPaintedIsTold) {
    TextLabel label;
    label.setText(QStringLiteral("Overview"));
    EXPECT_EQ(told(label, QAccessible::Name), "Overview");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->role(), QAccessible::StaticText);
    Badge badge;
    badge.set(Condition::elevated, QStringLiteral("Elevated"));
    EXPECT_EQ(told(badge, QAccessible::Name), "Elevated");
    StatusGlyph glyph(Condition::good);
    glyph.set(Condition::good, QStringLiteral("Normal"));
    EXPECT_EQ(told(glyph, QAccessible::Name), "Normal");
    Gauge gauge;
    gauge.set(0.62, QStringLiteral("62%"), QStringLiteral("pressure"), Condition::elevated,
              QStringLiteral("Memory pressure"));
    EXPECT_EQ(told(gauge, QAccessible::Name), "Memory pressure");
    EXPECT_EQ(told(gauge, QAccessible::Description), "62% pressure");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&gauge)->role(), QAccessible::Chart);
    Bar bar;
    bar.set({{Series::s4, 0.5, QStringLiteral("App 16.9 GB")}, {Series::s1, 0.2, QStringLiteral("Wired 3.1 GB")}},
            QStringLiteral("Memory"));
    EXPECT_EQ(told(bar, QAccessible::Description), "App 16.9 GB, Wired 3.1 GB");
    KeyValueList list;
    list.set({{QStringLiteral("Temperature"), QStringLiteral("Unavailable")}, {}});
    EXPECT_EQ(told(list, QAccessible::Name), "Temperature Unavailable");
    Stepper stepper(QStringLiteral("Threshold"), 0, 10);
    EXPECT_EQ(told(*stepper.findChild<QDoubleSpinBox*>(), QAccessible::Name), "Threshold");
}

TEST_F(AccessibilityTest, ABannerSaysBothItsLines) {
    Banner banner;
    banner.set(Condition::high, QStringLiteral("The history could not be opened."));
    EXPECT_EQ(told(banner, QAccessible::Name), "The history could not be opened.");
    banner.set(Condition::high, QStringLiteral("The history could not be opened."),
               QStringLiteral("The disk is full."));
    EXPECT_EQ(told(banner, QAccessible::Name), "The history could not be opened. The disk is full.");
}

TEST_F(AccessibilityTest, ChoicesAndRowsCanBeFoundAndPressed) {
    SegmentedControl control(QStringLiteral("Range"), {QStringLiteral("Live"), QStringLiteral("1H")});
    QAccessibleInterface* group = QAccessible::queryAccessibleInterface(&control);
    ASSERT_EQ(group->childCount(), 2);
    QAccessibleInterface* second = group->child(1);
    EXPECT_EQ(second->text(QAccessible::Name), QStringLiteral("1H"));
    EXPECT_EQ(second->role(), QAccessible::RadioButton);
    EXPECT_EQ(group->indexOfChild(second), 1);
    EXPECT_FALSE(second->state().checked);
    second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(control.index(), 1);
    EXPECT_TRUE(second->state().checked);

    EvidenceList list(QStringLiteral("Insights"));
    list.set(
        {{"a", "cpu", Condition::info, QStringLiteral("Idle servers"), QStringLiteral("They hold 602 MB."), {}, true}});
    QSignalSpy activated(&list, &EvidenceList::activated);
    QAccessibleInterface* row = QAccessible::queryAccessibleInterface(&list)->child(0);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("Idle servers They hold 602 MB."));
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(activated.count(), 1);
    list.set({});
    EXPECT_FALSE(row->isValid()) << "a row that is gone answers nothing";
    EXPECT_EQ(row->text(QAccessible::Name), QString());
}

TEST_F(AccessibilityTest, ButtonsOfEveryKindCanBePressed) {
    MetricTile tile("cpu");
    tile.set({.caption = QStringLiteral("CPU"), .value = QStringLiteral("31%"), .detail = QStringLiteral("User 22%")});
    EXPECT_EQ(told(tile, QAccessible::Name), "CPU");
    EXPECT_EQ(told(tile, QAccessible::Description), "31%, User 22%");
    IconButton icon("refresh", QStringLiteral("Refresh"));
    EXPECT_EQ(told(icon, QAccessible::Name), "Refresh");
    Switch toggle(QStringLiteral("Start at login"));
    EXPECT_EQ(told(toggle, QAccessible::Name), "Start at login");
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(&toggle)->state().checkable);
    for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{&tile, &icon, &toggle}) {
        // What can be switched is switched, the rest is clicked.
        QSignalSpy clicked(button, button->isCheckable() ? &QAbstractButton::toggled : &QAbstractButton::clicked);
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(button);
        const QStringList actions = interface->actionInterface()->actionNames();
        ASSERT_FALSE(actions.isEmpty());
        interface->actionInterface()->doAction(actions.first());
        EXPECT_TRUE(QTest::qWaitFor([&] { return clicked.count() == 1; }));
    }
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(&toggle)->state().checked);
}

} // namespace

} // namespace ostrivane
