#include "app/widgets/TextLabel.hpp"
#include "tests/app/widgets/WidgetHarness.hpp"

#include "app/widgets/Numbers.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/StatGrid.hpp"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace ostrivane {

namespace {

class TextLabelTest : public testing::Test {
    WidgetSetting setting;
};

TEST_F(TextLabelTest, HasTheWholeTextAsTooltipWhileItIsCut) {
    TextLabel label;
    label.setText(QStringLiteral("A name that needs its room"));
    label.resize(label.sizeHint());
    label.show();
    EXPECT_EQ(label.toolTip(), QString());
    label.resize(60, label.height());
    EXPECT_EQ(label.toolTip(), label.text());
    label.setText(QStringLiteral("Short"));
    EXPECT_EQ(label.toolTip(), QString());
    label.setToolTip(QStringLiteral("Why it is so"));
    label.setText(QStringLiteral("A name that needs its room"));
    EXPECT_EQ(label.toolTip(), QStringLiteral("Why it is so")) << "a page's own explanation stays";
}

TEST_F(TextLabelTest, ShowsMarkUpFromOutsideAsText) {
    const QString hostile = QStringLiteral("<img src=\"http://example.invalid/x.png\"><b>bold</b>");
    const QString tip = Paint::toolTip(hostile);
    EXPECT_TRUE(tip.contains(QStringLiteral("&lt;img"))) << tip.toStdString();
    EXPECT_FALSE(tip.contains(QStringLiteral("<img")));
    EXPECT_LT(Paint::toolTip(QString(100000, u'x')).size(), 1100) << "a tooltip fits a screen";
}

TEST_F(TextLabelTest, NeedsLittleRoomForALongNameAndAllOfItForAFigure) {
    TextLabel label;
    label.setText(QString(4096, u'W'));
    EXPECT_LT(label.minimumSizeHint().width(), 100);
    label.setText(QStringLiteral("23.4 GB of 32.0 GB"));
    label.setElideMode(Qt::ElideNone);
    EXPECT_EQ(label.minimumSizeHint().width(), label.sizeHint().width());
}

TEST_F(TextLabelTest, KeepsItsRoomWhileFiguresChange) {
    TextLabel label;
    label.setTabular(true);
    label.setReserved(QStringLiteral("888.8 MB/s"));
    label.setText(QStringLiteral("1.1 MB/s"));
    const QSize before = label.sizeHint();
    label.setText(QStringLiteral("412.0 MB/s"));
    EXPECT_EQ(label.sizeHint(), before);
}

TEST_F(TextLabelTest, WrapsWithinItsWidthWhateverTheWords) {
    TextLabel label;
    label.setWraps(true);
    label.setText(QStringLiteral("one"));
    const int line = label.heightForWidth(200);
    label.setText(QStringLiteral("one\ntwo\nthree"));
    EXPECT_EQ(label.heightForWidth(200), 3 * line);
    label.setText(QString(200, u'x')); // no place to break at
    EXPECT_GE(label.heightForWidth(100), 5 * line);
    EXPECT_GT(label.heightForWidth(100), label.heightForWidth(300));

    // What lies beyond its width would be cut off, so nothing may.
    QImage image(140, label.heightForWidth(100), QImage::Format_ARGB32);
    image.fill(Qt::white);
    label.resize(100, image.height());
    label.render(&image, {}, {}, QWidget::DrawChildren);
    for (int y = 0; y < image.height(); ++y)
        ASSERT_EQ(image.pixel(110, y), qRgb(255, 255, 255));
}

TEST_F(TextLabelTest, DigitsAreAllAsWideAsEachOther) {
    for (const char* family : {"", "Inter", "DejaVu Serif", "Noto Sans"}) {
        QFont font = Type::font(TypeRole::statValue);
        if (*family)
            font.setFamily(QString::fromLatin1(family));
        EXPECT_NEAR(Numbers::width(font, QStringLiteral("1h ")) + Numbers::width(font, QStringLiteral("2")),
                    Numbers::width(font, QStringLiteral("1h 2")), 0.11)
            << family;
        for (int digit = 0; digit < 10; ++digit)
            EXPECT_NEAR(Numbers::width(font, QStringLiteral("1.%1 GB").arg(digit)),
                        Numbers::width(font, QStringLiteral("1.8 GB")), 0.11)
                << family << digit;
    }
}

/// Right-to-left layouts move a figure to the other side and leave its words in their order.
TEST_F(TextLabelTest, KeepsTheOrderOfItsWordsWhenMirrored) {
    const auto drawn = [](Qt::LayoutDirection direction, Qt::Alignment alignment) {
        QImage image(200, 24, QImage::Format_ARGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setLayoutDirection(direction);
        Numbers::draw(painter, image.rect(), Type::font(TypeRole::statValue), alignment | Qt::AlignVCenter,
                      QStringLiteral("2.10 W"));
        return image;
    };
    EXPECT_EQ(drawn(Qt::RightToLeft, Qt::AlignLeading), drawn(Qt::LeftToRight, Qt::AlignTrailing));
    EXPECT_NE(drawn(Qt::RightToLeft, Qt::AlignLeading), drawn(Qt::LeftToRight, Qt::AlignLeading));
}

TEST_F(TextLabelTest, ColumnsOfFiguresMakeRoomForALongOne) {
    StatGrid grid(3);
    grid.set({{QStringLiteral("CPU"), QStringLiteral("31%")},
              {QStringLiteral("Memory"), QStringLiteral("23.4 GB"), QStringLiteral("of 32.0 GB")},
              {QStringLiteral("Energy"), QStringLiteral("2.10 W")}});
    EXPECT_LT(grid.minimumSizeHint().width(), grid.sizeHint().width()) << "a remark may be cut, a figure not";
    const int before = grid.minimumSizeHint().height();
    grid.setColumns(1);
    EXPECT_GT(grid.minimumSizeHint().height(), 2 * before);
}

} // namespace

} // namespace ostrivane
