#include "app/pages/ResourcePage.hpp"

#include "app/pages/RangePicker.hpp"
#include "app/pages/ResourceChart.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Type.hpp"

#include <QVBoxLayout>

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace ostrivane {

namespace {

std::vector<TimedValue> scaled(std::span<const TimedValue> points, double scale) {
    std::vector<TimedValue> result(points.begin(), points.end());
    for (TimedValue& point : result)
        point.value *= scale;
    return result;
}

RowFigure scaled(const RowFigure& figure, double scale) {
    if (!figure)
        return {};
    return [figure, scale](const SystemRow& row) {
        std::optional<double> value = figure(row);
        if (value)
            *value *= scale;
        return value;
    };
}

} // namespace

ResourcePage::ResourcePage(Page page, PageContext& given, QWidget* parent) : PageView(page, given, parent) {
    picker = new RangePicker(this);
    addHeaderControl(picker);
    feed = new HistoryFeed(given, this);

    auto* sheet = new QWidget(this);
    cards = new QVBoxLayout(sheet);
    cards->setContentsMargins(0, 0, 0, 0);
    cards->setSpacing(Type::px(12));
    problem = new Banner(sheet);
    problem->hide();
    cards->addWidget(problem);
    setBody(sheet, false);

    connect(picker, &RangePicker::rangeChosen, this, [this] { feed->setRange(picker->range()); });
    connect(feed, &HistoryFeed::changed, this, &ResourcePage::showPast);
}

void ResourcePage::wake() {
    feed->setAwake(true);
}

void ResourcePage::sleep() {
    feed->setAwake(false);
}

bool ResourcePage::isLive() const {
    return !picker->range();
}

void ResourcePage::setRangesShown(bool shown) {
    picker->setVisible(shown);
}

double ResourcePage::interval() const {
    return state().snapshot->interval;
}

QString ResourcePage::reach() const {
    return rangeText(picker->range(), interval());
}

void ResourcePage::draw(ResourceChart& chart, const std::vector<Line>& lines) const {
    if (isLive()) {
        std::vector<ChartLine> drawn;
        drawn.reserve(lines.size());
        for (const Line& line : lines)
            drawn.push_back({.series = line.series,
                             .name = line.name,
                             .points = scaled(state().live[line.live], line.scale),
                             .isDashed = line.isDashed,
                             .text = line.text});
        chart.showLive(std::move(drawn), state().snapshot->timestamp.seconds);
        return;
    }
    std::vector<HistoryLine> drawn;
    drawn.reserve(lines.size());
    for (const Line& line : lines)
        drawn.push_back(
            {.series = line.series,
             .name = line.name,
             .points = historyPoints(feed->rows(), scaled(line.past, line.scale), scaled(line.peak, line.scale)),
             .isDashed = line.isDashed,
             .text = line.text});
    chart.showPast(std::move(drawn), *feed);
}

void ResourcePage::showPast() {
    const auto& failure = feed->problem();
    problem->set(Condition::high, failure ? QStringLiteral("The history cannot be read.") : QString(),
                 failure ? text(*failure) : QString());
    if (isAwake())
        refreshCharts();
}

} // namespace ostrivane
