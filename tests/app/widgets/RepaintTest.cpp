#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/Badge.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Bar.hpp"
#include "app/widgets/EvidenceList.hpp"
#include "app/widgets/Gauge.hpp"
#include "app/widgets/KeyValueList.hpp"
#include "app/widgets/Legend.hpp"
#include "app/widgets/MetricTile.hpp"
#include "app/widgets/StatGrid.hpp"
#include "app/widgets/Tag.hpp"
#include "app/widgets/TextLabel.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>

namespace ostrivane {

namespace {

/// A widget, and a way to set it to the first or the second of two contents.
struct Case {
    const char* name;
    std::function<std::unique_ptr<QWidget>()> make;
    std::function<void(QWidget&, bool second)> set;
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.name;
}

template <class Widget, class... Arguments>
Case of(const char* name, std::function<void(Widget&, const QString&)> set, Arguments... arguments) {
    return {name, [=] { return std::make_unique<Widget>(arguments...); },
            [set](QWidget& widget, bool second) {
                set(static_cast<Widget&>(widget), second ? QStringLiteral("32%") : QStringLiteral("31%"));
            }};
}

std::vector<Case> cases() {
    return {
        of<TextLabel>("TextLabel", [](TextLabel& it, const QString& text) { it.setText(text); }),
        of<Badge>("Badge", [](Badge& it, const QString& text) { it.set(Condition::good, text); }),
        of<Tag>("Tag", [](Tag& it, const QString& text) { it.setWord(text); }),
        of<Banner>("Banner", [](Banner& it, const QString& text) { it.set(Condition::info, text, text); }),
        of<StatGrid>(
            "StatGrid",
            [](StatGrid& it, const QString& text) {
                it.set({{QStringLiteral("CPU"), text}, {QStringLiteral("GPU"), QStringLiteral("1%")}});
            },
            2),
        of<KeyValueList>("KeyValueList",
                         [](KeyValueList& it, const QString& text) {
                             it.set({{QStringLiteral("CPU"), text}, {}});
                         }),
        of<Legend>("Legend",
                   [](Legend& it, const QString& text) {
                       it.set({{Series::s1, QStringLiteral("CPU"), text}});
                   }),
        of<Gauge>("Gauge", [](Gauge& it,
                              const QString& text) { it.set(0.5, text, {}, Condition::good, QStringLiteral("CPU")); }),
        of<Bar>("Bar",
                [](Bar& it, const QString& text) {
                    it.set({{Series::s1, 0.5, text}}, QStringLiteral("CPU"));
                }),
        of<EvidenceList>(
            "EvidenceList",
            [](EvidenceList& it, const QString& text) {
                it.set({{"id", "cpu", Condition::info, text, text, text, true}});
            },
            QStringLiteral("Insights")),
        of<MetricTile>(
            "MetricTile",
            [](MetricTile& it, const QString& text) {
                it.set({.caption = QStringLiteral("CPU"), .value = text});
                it.setLines({{Series::s1, {}}}, 1, 10);
            },
            std::string("cpu")),
    };
}

class Repaint : public testing::TestWithParam<Case> {
    WidgetSetting setting;
};

/// Every figure is set on every tick, and most of them are what they were.
TEST_P(Repaint, PaintsOnlyWhatChanged) {
    const std::unique_ptr<QWidget> widget = GetParam().make();
    GetParam().set(*widget, false);
    showActive(*widget, {300, 120});
    PaintCount paints(*widget);
    paints.take();
    GetParam().set(*widget, false);
    EXPECT_EQ(paints.take(), 0);
    GetParam().set(*widget, true);
    EXPECT_GE(paints.take(), 1);
    GetParam().set(*widget, true);
    EXPECT_EQ(paints.take(), 0);
    Theme::use(Theme::dark());
    EXPECT_GE(paints.take(), 1) << "a change of theme is seen at once";
}

INSTANTIATE_TEST_SUITE_P(Widgets, Repaint, testing::ValuesIn(cases()),
                         [](const testing::TestParamInfo<Case>& given) { return given.param.name; });

} // namespace

} // namespace ostrivane
