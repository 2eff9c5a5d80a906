#include "app/pages/HistoryStrips.hpp"

#include "app/pages/MomentReadout.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/HistoryChart.hpp"
#include "app/widgets/Type.hpp"

#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

constexpr double labelWidth = 132;
constexpr double narrowLabelWidth = 112;
constexpr double plotHeight = 66;
constexpr double timesHeight = 20;
constexpr double labelsWidth = 54; // of a chart's axis, at its right

constexpr std::array<const char*, historyMetrics> names{"CPU, history",   "Memory, history", "Network, history",
                                                        "Disk, history",  "GPU, history",    "Temperature, history",
                                                        "Power, history", "Battery, history"};

} // namespace

void StripLabel::set(const HistoryStrip& strip) {
    Words words{strip.series, strip.name, strip.value, strip.remark, strip.detail, strip.detailSeries};
    if (words == shown)
        return;
    shown = std::move(words);
    setAccessibleName(QStringLiteral("%1: %2 %3, %4").arg(shown.name, shown.value, shown.remark, shown.detail));
    setToolTip(shown.detail);
    update();
}

QSize StripLabel::sizeHint() const {
    return {Type::px(labelWidth), Type::lineHeight(TypeRole::secondary) + Type::lineHeight(TypeRole::statValue) +
                                      Type::lineHeight(TypeRole::caption)};
}

void StripLabel::paintEvent(QPaintEvent*) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto leading = static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignVCenter);
    const auto visual = [this](const QRect& logical) { return QStyle::visualRect(layoutDirection(), rect(), logical); };
    const auto mark = [&](Series series, const QRect& line, int side, double radius) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.colour(series));
        const QRect square(line.left(), line.center().y() - side / 2, side, side);
        painter.drawRoundedRect(visual(square), radius, radius);
    };
    /// Answers how wide it is.
    const auto write = [&](const QString& words, TypeRole role, Tone tone, const QRect& line) {
        const QFont font = Type::font(role);
        const QFontMetricsF metrics(font);
        painter.setFont(font);
        painter.setPen(theme.colour(tone));
        painter.drawText(visual(line), leading, metrics.elidedText(words, Qt::ElideRight, line.width()));
        return static_cast<int>(metrics.horizontalAdvance(words));
    };

    QRect line(0, 0, width(), Type::lineHeight(TypeRole::secondary));
    mark(shown.series, line, Type::px(9), 2);
    write(shown.name, TypeRole::secondary, Tone::text2, line.adjusted(Type::px(15), 0, 0, 0));
    line = QRect(0, line.bottom() + 1, width(), Type::lineHeight(TypeRole::statValue));
    const int taken = write(shown.value, TypeRole::statValue, Tone::text, line);
    if (!shown.remark.isEmpty())
        write(shown.remark, TypeRole::secondary, Tone::text2, line.adjusted(taken + Type::px(5), 0, 0, 0));
    line = QRect(0, line.bottom() + 1, width(), Type::lineHeight(TypeRole::caption));
    if (shown.detailSeries)
        mark(*shown.detailSeries, line, Type::px(7), Type::px(7) / 2.0);
    write(shown.detail, TypeRole::caption, Tone::text2, line.adjusted(shown.detailSeries ? Type::px(12) : 0, 0, 0, 0));
}

HistoryStrips::HistoryStrips(QWidget* overlay) : QWidget(overlay), room(overlay) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(9));
    for (const char* name : names) {
        Strip strip;
        if (!strips.empty()) {
            strip.line = Card::separator(this);
            column->addWidget(strip.line);
        }
        strip.holder = new QWidget(this);
        auto* row = new QHBoxLayout(strip.holder);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(Type::px(12));
        strip.label = new StripLabel(strip.holder);
        strip.chart = new HistoryChart(QString::fromLatin1(name), strip.holder);
        strip.chart->setShowsReadout(false);
        strip.chart->setReservedLabel(QStringLiteral("888.8 MB/s")); // so that all plots are equally wide
        connect(strip.chart, &HistoryChart::cursorMoved, this, &HistoryStrips::moveCursor);
        row->addWidget(strip.label, 0, Qt::AlignTop);
        row->addWidget(strip.chart, 1);
        column->addWidget(strip.holder);
        strips.push_back(strip);
    }
    readout = new MomentReadout(overlay);
    setNarrow(false);
}

void HistoryStrips::set(const std::vector<HistoryStrip>& shown, double since, double until) {
    from = since;
    to = until;
    for (Strip& strip : strips)
        strip.isShown = false;
    for (const HistoryStrip& made : shown) {
        Strip& strip = strips.at(static_cast<std::size_t>(made.metric));
        strip.isShown = true;
        strip.label->set(made);
        strip.chart->setAxis(made.axis);
        strip.chart->setRange(since, until);
        strip.chart->setLines(made.lines);
    }
    const auto last = std::ranges::find_if(strips.rbegin(), strips.rend(), &Strip::isShown);
    bool isFirst = true;
    for (Strip& strip : strips) {
        const bool isLast = last != strips.rend() && &strip == &*last;
        strip.holder->setVisible(strip.isShown);
        if (strip.line)
            strip.line->setVisible(strip.isShown && !isFirst);
        isFirst = isFirst && !strip.isShown;
        strip.chart->setShowsTimes(isLast);
        strip.chart->setFixedHeight(Type::px(plotHeight + (isLast ? timesHeight : 0)));
    }
    setBands(stretches);
}

void HistoryStrips::setBands(const std::vector<ChartBand>& bands) {
    stretches = bands;
    std::vector<ChartBand> nameless = bands;
    for (ChartBand& band : nameless)
        band.name.clear();
    bool isFirst = true; // which alone has the names
    for (Strip& strip : strips) {
        if (!strip.isShown)
            continue;
        strip.chart->setBands(isFirst ? bands : nameless);
        isFirst = false;
    }
}

void HistoryStrips::setNarrow(bool narrow) {
    for (Strip& strip : strips)
        strip.label->setFixedWidth(Type::px(narrow ? narrowLabelWidth : labelWidth));
}

void HistoryStrips::setMoment(const std::optional<MomentText>& moment) {
    if (!moment)
        return readout->hide();
    readout->set(*moment);
    placeReadout();
    readout->show();
    readout->raise();
}

void HistoryStrips::moveCursor(std::optional<double> time) {
    place = time;
    for (Strip& strip : strips)
        if (strip.chart != sender())
            strip.chart->setCursor(time);
    Q_EMIT cursorMoved(time);
}

void HistoryStrips::placeReadout() {
    const auto shown = std::ranges::find_if(strips, &Strip::isShown);
    if (!place || shown == strips.end() || to <= from)
        return;
    const QWidget& chart = *shown->chart;
    const QRect plot(chart.mapTo(room, QPoint(0, 0)), QSize(chart.width() - Type::px(labelsWidth), chart.height()));
    const int x = plot.left() + static_cast<int>((*place - from) / (to - from) * plot.width());
    const int distance = Type::px(14);
    const bool fits = x + distance + readout->width() <= plot.right();
    readout->move(fits ? x + distance : std::max(x - distance - readout->width(), 0), plot.top());
}

} // namespace ostrivane
