#include "app/widgets/ShapedText.hpp"

#include "app/widgets/Paint.hpp"
#include "tests/app/widgets/WidgetHarness.hpp"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

class ShapedTextTest : public testing::Test {
protected:
    /// Painted in the middle of an image of three lines.
    QImage drawn(const ShapedText& text) const {
        QImage image(300, 60, QImage::Format_ARGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        Paint::draw(painter, QRectF(0, 20, 300, 20), QFontMetricsF(font), Qt::AlignLeft | Qt::AlignVCenter, text);
        return image;
    }

    WidgetSetting setting;
    const QFont font = Type::font(TypeRole::table);
};

bool isWhite(const QImage& image, const QRect& part) {
    QImage white(part.size(), image.format());
    white.fill(Qt::white);
    return image.copy(part) == white;
}

} // namespace

TEST_F(ShapedTextTest, LooksAsTheToolkitsOwn) {
    for (const QString& words : {QStringLiteral("Visual Studio Code"), QStringLiteral("Größe"),
                                 QString(QChar(0x05E9)) + QChar(0x05DC) + QChar(0x05D5) + QChar(0x05DD)}) {
        QImage own(300, 60, QImage::Format_ARGB32);
        own.fill(Qt::white);
        QPainter painter(&own);
        painter.setFont(font);
        const QFontMetricsF metrics(font);
        painter.drawText(QPointF(0, 30 + (metrics.ascent() - metrics.descent()) / 2), words);
        painter.end();
        EXPECT_EQ(drawn(ShapedText::of(font, words)), own) << words.toStdString();
        EXPECT_NEAR(ShapedText::of(font, words).width, metrics.horizontalAdvance(words), 0.1);
    }
}

TEST_F(ShapedTextTest, FitsItsRoomAndIsRememberedByIt) {
    const QString words = QStringLiteral("A name that needs more room than there is");
    const ShapedText whole = ShapedText::of(font, words);
    for (int round = 0; round < 2; ++round) { // made, and remembered
        EXPECT_EQ(ShapedText::fitting(font, words, whole.width, Qt::ElideRight).width, whole.width);
        const ShapedText half = ShapedText::fitting(font, words, whole.width / 2, Qt::ElideRight);
        EXPECT_LE(half.width, whole.width / 2);
        EXPECT_GT(half.width, whole.width / 4);
        EXPECT_NE(drawn(half), drawn(ShapedText::fitting(font, words, whole.width / 2, Qt::ElideMiddle)));
        EXPECT_TRUE(ShapedText::fitting(font, words, 0, Qt::ElideRight).runs.isEmpty());
    }
    for (int other = 0; other < 4000; ++other) // more than are remembered
        ShapedText::of(font, QString::number(other));
    EXPECT_EQ(ShapedText::of(font, words).width, whole.width);
}

TEST_F(ShapedTextTest, KeepsPilesOfAccentsInTheirLine) {
    const QImage image = drawn(ShapedText::of(font, QStringLiteral("e") + QString(300, QChar(0x0301))));
    EXPECT_TRUE(isWhite(image, {0, 0, 300, 20}));
    EXPECT_TRUE(isWhite(image, {0, 40, 300, 20}));
    EXPECT_FALSE(isWhite(image, {0, 20, 300, 20}));
}

} // namespace ostrivane
