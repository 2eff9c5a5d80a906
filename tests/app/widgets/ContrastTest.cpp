#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/AppIcons.hpp"
#include "app/widgets/StatusGlyph.hpp"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace ostrivane {

namespace {

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

class Contrast : public testing::TestWithParam<bool> {
protected:
    const Theme& theme = GetParam() ? Theme::dark() : Theme::light();

private:
    WidgetSetting setting;
};

TEST_P(Contrast, TextIsReadableWhereverItStands) {
    for (const QColor& ground : {theme.window, theme.sidebar, theme.card, theme.cardAlt})
        for (const QColor& ink : {theme.text, theme.text2, theme.text3, theme.accent})
            EXPECT_GE(contrast(ink, ground), 4.8) << ink.name().toStdString() << " on " << ground.name().toStdString();
    EXPECT_GE(contrast(theme.onAccent, theme.accentFill), 4.5);
    EXPECT_GE(contrast(theme.onDanger, theme.dangerFill), 4.5);
    EXPECT_GE(contrast(theme.onTooltip, theme.tooltip), 4.5);
    EXPECT_GE(contrast(theme.text2, theme.selection), 4.5) << "keys in a menu, on the chosen entry";
}

TEST_P(Contrast, AStatusIsReadableOnItsGround) {
    for (const Condition condition :
         {Condition::good, Condition::elevated, Condition::high, Condition::unknown, Condition::info}) {
        const StatusColours colours = theme.colours(condition);
        EXPECT_GE(contrast(colours.text, colours.ground), 4.5);
        EXPECT_GE(contrast(colours.text, theme.card), 4.5) << "as a figure";
        EXPECT_GE(contrast(theme.text, colours.ground), 4.5) << "as a banner";
        EXPECT_GE(contrast(theme.text2, colours.ground), 4.5) << "as a banner's second line";
    }
}

/// Whoever sees no colours still tells conditions apart: their shapes differ.
TEST_P(Contrast, GlyphsDifferInShape) {
    Theme::use(theme);
    std::vector<QImage> shapes;
    for (const Condition condition :
         {Condition::good, Condition::elevated, Condition::high, Condition::unknown, Condition::info}) {
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(theme.card);
        QPainter painter(&image);
        drawStatusGlyph(painter, image.rect(), condition);
        painter.end();
        QImage shape(16, 16, QImage::Format_Mono); // marked or not, whatever the colour
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x)
                shape.setPixel(x, y, contrast(image.pixelColor(x, y), theme.card) > 1.6 ? 1 : 0);
        for (const QImage& before : shapes) {
            int different = 0;
            for (int y = 0; y < 16; ++y)
                for (int x = 0; x < 16; ++x)
                    different += before.pixelIndex(x, y) != shape.pixelIndex(x, y) ? 1 : 0;
            EXPECT_GE(different, 12);
        }
        shapes.push_back(shape);
    }
}

INSTANTIATE_TEST_SUITE_P(Themes, Contrast, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& given) { return given.param ? "dark" : "light"; });

TEST(TileColour, CarriesWhiteLetteringAndKeepsToItsKey) {
    std::set<QRgb> colours;
    for (int index = 0; index < 100; ++index) {
        const std::string key = "/Applications/" + std::to_string(index) + ".app";
        const QColor colour = AppIcons::tileColour(key);
        EXPECT_GE(contrast(Theme::light().onAccent, colour), 4.5) << colour.name().toStdString();
        EXPECT_EQ(colour, AppIcons::tileColour(key));
        colours.insert(colour.rgb());
    }
    EXPECT_GE(colours.size(), 6U);
}

} // namespace

} // namespace ostrivane
