#include "app/widgets/CoreGrid.hpp"
#include "app/widgets/HistoryChart.hpp"
#include "app/widgets/LiveChart.hpp"
#include "app/widgets/MirrorChart.hpp"
#include "app/widgets/Sparkline.hpp"
#include "app/widgets/Type.hpp"
#include "tests/TimeZone.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>

#include <cmath>

#include <gtest/gtest.h>

namespace ostrivane {
namespace {

constexpr double now = 1763735520; // 14:32:00 UTC

const auto whole = [](double value) { return QString::number(std::lround(value)); };

std::vector<TimedValue> rising(std::size_t count, double step = 2) {
    std::vector<TimedValue> points;
    for (std::size_t index = 0; index < count; ++index)
        points.push_back({now - static_cast<double>(count - 1 - index) * step, static_cast<double>(index + 1)});
    return points;
}

ChartLine line(std::vector<TimedValue> points, Series series = Series::s1) {
    return {.series = series, .name = QStringLiteral("Line"), .points = std::move(points), .text = whole};
}

HistoryLine past(std::vector<HistoryPoint> points) {
    return {.series = Series::s1, .name = QStringLiteral("Line"), .points = std::move(points), .text = whole};
}

/// What a widget is asked to paint.
class PaintCount final : public QObject {
public:
    explicit PaintCount(QWidget& widget) {
        widget.installEventFilter(this);
        widget.setAttribute(Qt::WA_DontShowOnScreen);
        widget.resize(600, 200);
        widget.QWidget::show();
        taken();
    }
    /// Since the last call.
    QRegion taken() {
        QApplication::processEvents(); // a change of palette first becomes known, and then is painted
        QApplication::processEvents();
        return std::exchange(painted, {});
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

private:
    QRegion painted;
};

void press(QWidget& widget, int key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void point(QWidget& widget, QPointF at) {
    QMouseEvent event(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// Whether a column of pixels shows a colour, or one near it.
bool showsColour(const QImage& image, int x, const QColor& colour) {
    for (int y = 0; y < image.height(); ++y) {
        const QColor pixel = image.pixelColor(x, y);
        if (std::abs(pixel.red() - colour.red()) + std::abs(pixel.green() - colour.green()) +
                std::abs(pixel.blue() - colour.blue()) <
            160) // a thin line may lie on two rows of pixels
            return true;
    }
    return false;
}

TEST(LiveChartTest, PaintsOnlyWhatChanged) {
    LiveChart chart(QStringLiteral("CPU"));
    PaintCount paints(chart);
    chart.setAxis({.kind = ChartAxis::Kind::fixed, .most = 200, .label = whole});
    chart.setLines({line(rising(100))}, now);
    EXPECT_FALSE(paints.taken().isEmpty());
    chart.setLines({line(rising(100))}, now);
    EXPECT_TRUE(paints.taken().isEmpty()) << "equal figures";
    auto points = rising(100);
    points.back().value = 7;
    chart.setLines({line(points)}, now);
    const QRect plot = paints.taken().boundingRect();
    EXPECT_FALSE(plot.isEmpty());
    EXPECT_LT(plot.right(), chart.width() - 40) << "the labels stand";
    EXPECT_LT(plot.bottom(), chart.height() - 10);
    chart.setAxis({.kind = ChartAxis::Kind::fixed, .most = 400, .label = whole});
    EXPECT_EQ(paints.taken().boundingRect(), chart.rect()) << "another axis, other labels";
    Theme::use(Theme::dark());
    EXPECT_EQ(paints.taken().boundingRect(), chart.rect());
    Theme::use(Theme::light());
}

TEST(LiveChartTest, TheRightEdgeIsTheNewest) {
    LiveChart chart(QStringLiteral("CPU"));
    chart.setCompact(true);
    chart.resize(300, 100);
    chart.setAxis({.kind = ChartAxis::Kind::percent});
    std::vector<TimedValue> points;
    for (double ago = 30; ago >= 0; ago -= 2)
        points.push_back({now - ago, 0.5});
    chart.setLines({line(points)}, now);
    const QImage image = chart.grab().toImage();
    const QColor colour = Theme::current().s1;
    EXPECT_TRUE(showsColour(image, 298, colour));
    EXPECT_TRUE(showsColour(image, 272, colour));
    EXPECT_FALSE(showsColour(image, 267, colour)) << "before the first point";
}

TEST(LiveChartTest, KeysMoveTheCursorBySamples) {
    const TimeZone zone("UTC");
    LiveChart chart(QStringLiteral("CPU"));
    PaintCount paints(chart);
    chart.setLines({line(rising(10))}, now);
    EXPECT_EQ(chart.focusPolicy(), Qt::StrongFocus);
    press(chart, Qt::Key_Left);
    EXPECT_EQ(chart.cursor(), now) << "the first key shows the newest";
    press(chart, Qt::Key_Left);
    EXPECT_EQ(chart.cursor(), now - 2);
    press(chart, Qt::Key_Home);
    EXPECT_EQ(chart.cursor(), now - 18);
    press(chart, Qt::Key_Left);
    EXPECT_EQ(chart.cursor(), now - 18);
    press(chart, Qt::Key_Right);
    EXPECT_EQ(chart.description(),
              QStringLiteral("CPU, last 5 minutes: now 10, lowest 1, highest 10. At 14:31:44: Line 2."));
    press(chart, Qt::Key_Escape);
    EXPECT_FALSE(chart.cursor());
    EXPECT_EQ(chart.description(), QStringLiteral("CPU, last 5 minutes: now 10, lowest 1, highest 10."));
}

TEST(LiveChartTest, TheCursorStaysUnderThePointer) {
    LiveChart chart(QStringLiteral("CPU"));
    PaintCount paints(chart);
    chart.setLines({line(rising(151))}, now);
    point(chart, {270, 50});
    const auto first = chart.cursor();
    ASSERT_TRUE(first);
    auto later = rising(151);
    for (TimedValue& value : later)
        value.time += 20;
    chart.setLines({line(later)}, now + 20);
    EXPECT_EQ(*chart.cursor(), *first + 20);
    point(chart, {chart.width() - 2.0, 50});
    EXPECT_FALSE(chart.cursor()) << "over the labels";
    point(chart, {270, 50});
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&chart, &leave);
    EXPECT_FALSE(chart.cursor());
}

TEST(LiveChartTest, TakesAnyNumberOfPoints) {
    LiveChart chart(QStringLiteral("CPU"));
    chart.setAxis({.kind = ChartAxis::Kind::open, .label = whole});
    chart.setThreshold(ChartThreshold{2, QString(4096, QLatin1Char('x'))});
    PaintCount paints(chart);
    EXPECT_EQ(chart.description(), QStringLiteral("CPU, last 5 minutes: no data."));
    for (const int key : {Qt::Key_Left, Qt::Key_End}) {
        press(chart, key);
        EXPECT_FALSE(chart.cursor());
    }
    for (const std::size_t count : {1u, 5000u}) {
        for (const bool stacked : {false, true}) {
            chart.setStacked(stacked);
            chart.setLines({line(rising(count, 0.05)), line({}), line(rising(3, 0.05), Series::s2)}, now);
            press(chart, Qt::Key_Home);
            EXPECT_TRUE(chart.cursor());
            EXPECT_FALSE(chart.grab().isNull());
        }
    }
    chart.setLines({line(rising(10))}, now - 1000);
    EXPECT_FALSE(chart.cursor()) << "the clock was set back: nothing is in view";
    chart.resize(1, 1);
    EXPECT_FALSE(chart.grab().isNull());
}

TEST(LiveChartTest, StackedPartsAreReadOutByTheirOwn) {
    const TimeZone zone("UTC");
    LiveChart chart(QStringLiteral("CPU"));
    PaintCount paints(chart);
    chart.setStacked(true);
    ChartLine system = line({{now, 9}}, Series::s2);
    system.name = QStringLiteral("System");
    ChartLine user = line({{now, 22}});
    user.name = QStringLiteral("User");
    chart.setLines({system, user}, now);
    press(chart, Qt::Key_End);
    EXPECT_EQ(chart.description(),
              QStringLiteral("CPU, last 5 minutes: now 31, lowest 31, highest 31; System now 9, lowest 9, highest 9; "
                             "User now 22, lowest 22, highest 22. At 14:32:00: User 22, System 9."));
}

TEST(MirrorChartTest, TellsBothDirections) {
    const TimeZone zone("UTC");
    MirrorChart chart(QStringLiteral("Network"));
    PaintCount paints(chart);
    chart.setAxis({.kind = ChartAxis::Kind::open, .label = whole});
    ChartLine in = line({{now - 2, 40}, {now, 30}});
    in.name = QStringLiteral("Download");
    ChartLine out = line({{now - 2, 4}}, Series::s2);
    out.name = QStringLiteral("Upload");
    chart.setLines(in, out, now);
    paints.taken();
    chart.setLines(in, out, now);
    EXPECT_TRUE(paints.taken().isEmpty());
    press(chart, Qt::Key_End);
    EXPECT_EQ(chart.description(), QStringLiteral("Network, last 5 minutes: Download now 30, lowest 30, highest 40; "
                                                  "Upload now 4, lowest 4, highest 4. At 14:32:00: Download 30, "
                                                  "Upload —."));
    chart.setLines({}, {}, now);
    EXPECT_FALSE(chart.cursor());
}

TEST(HistoryChartTest, CursorsOfSeveralChartsGoTogether) {
    const TimeZone zone("UTC");
    HistoryChart first(QStringLiteral("CPU"));
    HistoryChart second(QStringLiteral("GPU"));
    PaintCount firstPaints(first);
    std::vector<std::optional<double>> told;
    QObject::connect(&first, &HistoryChart::cursorMoved, &second, [&](std::optional<double> time) {
        told.push_back(time);
        second.setCursor(time);
    });
    QObject::connect(&second, &HistoryChart::cursorMoved, &first, [](auto) { ADD_FAILURE() << "not by a person"; });
    first.setRange(now - 3600, now);
    second.setRange(now - 3600, now);
    first.setLines({past({{now - 180, 60, 1, 5.0}, {now - 120, 60, 2}})});
    second.setLines({past({{now - 180, 60, 8}})});
    press(first, Qt::Key_End);
    press(first, Qt::Key_End);
    press(first, Qt::Key_Home);
    EXPECT_EQ(told, (std::vector<std::optional<double>>{now - 90, now - 150}));
    EXPECT_EQ(first.description(),
              QStringLiteral("CPU, last hour: now 2, lowest 1, highest 2. At 14:29: Line 1 (peak 5)."));
    EXPECT_EQ(second.description(), QStringLiteral("GPU, last hour: now 8, lowest 8, highest 8. At 14:29: Line 8."));
    press(first, Qt::Key_Right);
    EXPECT_EQ(second.description(), QStringLiteral("GPU, last hour: now 8, lowest 8, highest 8. At 14:30: Line —."));
    press(first, Qt::Key_Escape);
    EXPECT_FALSE(second.cursor());
}

TEST(HistoryChartTest, LeavesGapsAndPaintsNothingTwice) {
    HistoryChart chart(QStringLiteral("CPU"));
    PaintCount paints(chart);
    chart.setShowsTimes(false);
    chart.setAxis({.kind = ChartAxis::Kind::percent});
    chart.setRange(now - 1000, now);
    std::vector<HistoryPoint> points;
    for (double ago = 1000; ago > 0; ago -= 10) {
        if (ago > 600 || ago <= 400)
            points.push_back({now - ago, 10, 0.5, 0.6});
    }
    const std::vector<ChartBand> bands{{now - 100, now - 50, QString(4096, QLatin1Char('x'))}};
    chart.setLines({past(points)});
    chart.setBands(bands);
    paints.taken();
    chart.setLines({past(points)});
    chart.setRange(now - 1000, now);
    chart.setBands(bands);
    EXPECT_TRUE(paints.taken().isEmpty());

    const QImage image = chart.grab().toImage();
    const QColor colour = Theme::current().s1;
    const int plot = chart.width() - Type::px(58);
    EXPECT_TRUE(showsColour(image, plot * 3 / 10, colour));
    EXPECT_FALSE(showsColour(image, plot / 2, colour));
    EXPECT_TRUE(showsColour(image, plot * 7 / 10, colour));
}

TEST(SparklineTest, TellsItsFiguresWhenItHasWords) {
    Sparkline sparkline(QStringLiteral("Fan"));
    PaintCount paints(sparkline);
    const SparklineLook look{.top = 20, .now = now};
    sparkline.set(rising(10), look);
    EXPECT_FALSE(paints.taken().isEmpty());
    sparkline.set(rising(10), look);
    EXPECT_TRUE(paints.taken().isEmpty());
    EXPECT_TRUE(sparkline.description().isEmpty());
    sparkline.setText(whole);
    EXPECT_EQ(sparkline.description(), QStringLiteral("Fan, last 5 minutes: now 10, lowest 1, highest 10."));
    for (const auto& points : {std::vector<TimedValue>{}, rising(1), rising(5000)}) {
        sparkline.set(points, {.top = 0, .now = now, .window = 10});
        EXPECT_FALSE(sparkline.grab().isNull());
    }
}

TEST(SparklineTest, AGapInThePointsIsAGapInTheLine) {
    Sparkline sparkline(QStringLiteral("Fan"));
    sparkline.resize(300, 40);
    std::vector<TimedValue> points;
    for (double ago = 300; ago >= 0; ago -= 2)
        if (ago >= 200 || ago <= 100) // the machine slept between them
            points.push_back({now - ago, 0.5});
    sparkline.set(points, {.top = 1, .now = now});
    const QImage image = sparkline.grab().toImage();
    const QColor colour = Theme::current().s1;
    EXPECT_TRUE(showsColour(image, 50, colour));
    EXPECT_FALSE(showsColour(image, 150, colour));
    EXPECT_TRUE(showsColour(image, 250, colour));
}

TEST(CoreGridTest, PaintsOnlyTheCellsThatChanged) {
    CoreGrid grid;
    PaintCount paints(grid);
    std::vector<CoreCell> cells(24, CoreCell{QStringLiteral("P0"), QStringLiteral("5%"), Series::s1, {0.1, 0.2}});
    grid.set(cells);
    grid.resize(grid.sizeHint());
    paints.taken();
    grid.set(cells);
    EXPECT_TRUE(paints.taken().isEmpty());
    cells[13].value = QStringLiteral("6%");
    grid.set(cells);
    const QRect painted = paints.taken().boundingRect();
    EXPECT_FALSE(painted.isEmpty());
    EXPECT_GE(painted.top(), grid.height() / 2) << "in the second row";
    EXPECT_LE(painted.width(), grid.width() / 12);
    EXPECT_EQ(grid.accessibleSentence().left(7), QStringLiteral("P0 5%, "));
}

TEST(CoreGridTest, IsAsHighAsItsRows) {
    CoreGrid grid;
    EXPECT_EQ(grid.heightForWidth(900), 0);
    grid.set(std::vector<CoreCell>(12, CoreCell{QStringLiteral("P0"), QStringLiteral("5%")}));
    const int one = grid.heightForWidth(1200);
    grid.setPerRow(6);
    EXPECT_EQ(grid.heightForWidth(1200), 2 * one + Type::px(8));
    EXPECT_GT(grid.heightForWidth(grid.minimumSizeHint().width()), grid.heightForWidth(1200)) << "narrow cells";
}

TEST(CoreGridTest, MeasuresItsNamesAnewWhenTheLetteringChanges) {
    const std::vector<CoreCell> cells(12, CoreCell{QStringLiteral("Efficiency 12"), QStringLiteral("5%")});
    CoreGrid grid;
    grid.set(cells);
    Type::setBase(26);
    CoreGrid fresh;
    fresh.set(cells);
    QEvent changed(QEvent::FontChange);
    QApplication::sendEvent(&grid, &changed);
    for (int width = 12 * Type::px(44); width < 12 * Type::px(160); width += Type::px(12))
        EXPECT_EQ(grid.heightForWidth(width), fresh.heightForWidth(width)) << width;
    Type::setBase(13);
}

} // namespace
} // namespace ostrivane
