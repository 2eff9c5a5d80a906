#include "app/pages/ResourceChart.hpp"

#include "app/pages/HistoryFeed.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/HistoryChart.hpp"
#include "app/widgets/LiveChart.hpp"

#include <QStackedLayout>

#include <algorithm>
#include <utility>

namespace ostrivane {

ResourceChart::ResourceChart(const QString& name, QWidget* parent) : QWidget(parent) {
    live = new LiveChart(name, this);
    past = new HistoryChart(name, this);
    empty = new EmptyState({}, this);
    empty->set(QStringLiteral("History builds up as Ostrivane runs."));
    stack = new QStackedLayout(this);
    stack->addWidget(live);
    stack->addWidget(past);
    stack->addWidget(empty);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ResourceChart::setAxis(const ChartAxis& axis) {
    live->setAxis(axis);
    past->setAxis(axis);
}

void ResourceChart::setStacked(bool stacked) {
    live->setStacked(stacked);
    past->setStacked(stacked);
}

void ResourceChart::setPlotHeight(int pixels) {
    setMinimumHeight(pixels);
}

void ResourceChart::showLive(std::vector<ChartLine> lines, double now) {
    live->setLines(std::move(lines), now);
    stack->setCurrentWidget(live);
}

void ResourceChart::showPast(std::vector<HistoryLine> lines, const HistoryFeed& feed) {
    if (feed.isReady() && !isDrawable(lines)) {
        stack->setCurrentWidget(empty);
        return;
    }
    if (feed.isReady())
        past->setRange(feed.since(), feed.until());
    past->setLines(std::move(lines));
    stack->setCurrentWidget(past);
}

bool isDrawable(const std::vector<HistoryLine>& lines) {
    return std::ranges::any_of(lines, [](const HistoryLine& line) { return line.points.size() > 1; });
}

} // namespace ostrivane
