#include "app/pages/AppHistoryView.hpp"

#include "app/pages/AppHistoryFeed.hpp"
#include "app/pages/AppHistoryText.hpp"
#include "app/pages/MemoryText.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/HistoryChart.hpp"
#include "app/widgets/Legend.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"
#include "core/model/Formatters.hpp"

#include <QHBoxLayout>

#include <algorithm>
#include <cmath>

namespace ostrivane {

namespace {

constexpr HistoryRange firstRange = HistoryRange::hours12;
constexpr double plotHeight = 84;
constexpr double timesHeight = 18;
constexpr double titleHeight = 28; // that of the range picker, which stands in the first title's row

QStringList rangeTitles() {
    QStringList titles;
    for (const HistoryRange range : appHistoryRanges)
        titles << text(rawValue(range));
    return titles;
}

int indexOf(HistoryRange range) {
    return static_cast<int>(std::ranges::find(appHistoryRanges, range) - appHistoryRanges.begin());
}

HistoryChart* makeChart(const QString& name, ChartAxis axis, QWidget* parent) {
    auto* chart = new HistoryChart(name, parent);
    chart->setAxis(std::move(axis));
    return chart;
}

} // namespace

AppHistoryView::AppHistoryView(PageContext& context, QWidget* parent) : QWidget(parent) {
    feed = new AppHistoryFeed(context, firstRange, this);
    banner = new Banner(this);
    cpuTitle = new TextLabel(TypeRole::cardTitle, Tone::text, this);
    memoryTitle = new TextLabel(TypeRole::cardTitle, Tone::text, this);
    note = new TextLabel(TypeRole::body, Tone::text2, this);
    note->setWraps(true);
    picker = new SegmentedControl(QStringLiteral("Range"), rangeTitles(), this);
    picker->setIndex(indexOf(firstRange));
    cpu = makeChart(
        QStringLiteral("CPU"),
        {.kind = ChartAxis::Kind::cores, .label = [](double cores) { return text(Formatters::cpu(cores)); }}, this);
    memory = makeChart(QStringLiteral("Memory"),
                       {.kind = ChartAxis::Kind::open, .binary = true, .label = memoryAxisText}, this);
    figures = new Legend(this);

    auto* titleRow = new QHBoxLayout;
    titleRow->addWidget(cpuTitle, 1);
    titleRow->addWidget(picker);
    auto* cpuBlock = new QVBoxLayout;
    cpuBlock->setSpacing(Type::px(4));
    cpuBlock->addLayout(titleRow);
    cpuBlock->addWidget(cpu);
    memoryBlock = new QWidget(this);
    auto* memoryLayout = new QVBoxLayout(memoryBlock);
    memoryLayout->setContentsMargins(0, 0, 0, 0);
    memoryLayout->setSpacing(Type::px(4));
    memoryLayout->addWidget(memoryTitle);
    memoryLayout->addWidget(memory);

    blocks = new QBoxLayout(QBoxLayout::TopToBottom);
    blocks->addLayout(cpuBlock, 1);
    blocks->addWidget(memoryBlock, 1);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(Type::px(8));
    all->addWidget(banner);
    all->addLayout(blocks);
    all->addWidget(note);
    all->addWidget(figures);
    setSideBySide(false);

    connect(feed, &AppHistoryFeed::changed, this, &AppHistoryView::showRows);
    connect(picker, &SegmentedControl::indexChosen, this,
            [this](int index) { feed->setRange(appHistoryRanges.at(static_cast<std::size_t>(index))); });
    connect(cpu, &HistoryChart::cursorMoved, memory, &HistoryChart::setCursor);
    connect(memory, &HistoryChart::cursorMoved, cpu, &HistoryChart::setCursor);
    showRows();
}

void AppHistoryView::setApp(std::optional<std::string> key) {
    feed->setApp(std::move(key));
}

void AppHistoryView::setAwake(bool awake) {
    feed->setAwake(awake);
}

void AppHistoryView::setSideBySide(bool sideBySide) {
    blocks->setDirection(sideBySide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    blocks->setSpacing(Type::px(sideBySide ? 16 : 8));
    memoryTitle->setFixedHeight(sideBySide ? Type::px(titleHeight) : memoryTitle->sizeHint().height());
    cpu->setShowsTimes(sideBySide); // one below the other, the lower one's times are those of both
    cpu->setFixedHeight(Type::px(sideBySide ? plotHeight + timesHeight : plotHeight));
    memory->setFixedHeight(Type::px(plotHeight + timesHeight));
}

void AppHistoryView::showRows() {
    const AppHistoryText shown = presentAppHistory(feed->rows(), feed->range());
    cpuTitle->setText(shown.cpuTitle);
    memoryTitle->setText(shown.memoryTitle);
    const auto& problem = feed->problem();
    banner->set(Condition::high, problem ? QStringLiteral("The history cannot be read.") : QString(),
                problem ? text(*problem) : QString());
    const bool hasCharts = shown.note.isEmpty() && !problem;
    note->setText(problem ? QString() : shown.note);
    note->setVisible(!problem && !shown.note.isEmpty());
    cpu->setVisible(hasCharts);
    memoryBlock->setVisible(hasCharts);
    figures->setVisible(hasCharts);
    figures->set(shown.figures);
    if (!hasCharts)
        return;
    static const std::vector<AppRow> none;
    const std::vector<AppRow>& rows = feed->rows() ? *feed->rows() : none;
    for (HistoryChart* chart : {cpu, memory})
        chart->setRange(feed->since(), feed->until());
    cpu->setLines({appCPULine(rows)});
    memory->setLines({appMemoryLine(rows)});
}

} // namespace ostrivane
