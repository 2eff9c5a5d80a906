#include "app/pages/MemoryPage.hpp"

#include "app/pages/EmptyText.hpp"
#include "app/pages/Links.hpp"
#include "app/pages/MemoryText.hpp"
#include "app/pages/ResourceChart.hpp"
#include "app/widgets/Badge.hpp"
#include "app/widgets/Bar.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/Gauge.hpp"
#include "app/widgets/InfoNote.hpp"
#include "app/widgets/KeyValueList.hpp"
#include "app/widgets/Legend.hpp"
#include "app/widgets/StatGrid.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Type.hpp"
#include "core/model/Calendar.hpp"
#include "core/model/Formatters.hpp"

#include <QBoxLayout>

#include <algorithm>
#include <functional>
#include <utility>

namespace ostrivane {

namespace {

constexpr double sideWidth = 300;
constexpr double plotHeight = 160;
constexpr int barHeight = 22;
constexpr double factsWidth = 150;
constexpr double askAgain = 60; // seconds: the history gets a row a minute
constexpr double percentsOfAll = 100;

QString shareText(double fraction) {
    return text(Formatters::percent(fraction));
}

QString bytesText(double bytes) {
    return text(Formatters::bytes(bytes));
}

} // namespace

MemoryPage::MemoryPage(PageContext& given, QWidget* parent) : ResourcePage(Page::memory, given, parent) {
    top = new QBoxLayout(QBoxLayout::LeftToRight);
    top->setSpacing(Type::px(12));
    body()->addLayout(top);
    addParts();
    addPressure();
    addCharts();
    addApplications();
    narrowChanged();
}

void MemoryPage::addParts() {
    auto* card = new Card(QStringLiteral("Where it goes"), this);
    card->setNote(QStringLiteral("Cached memory is handed back the moment an app needs it"));
    bar = new Bar(barHeight, card);
    parts = new StatGrid(5, card);
    stats = new StatGrid(4, card);
    swapNote = new InfoNote(card);
    card->body()->setSpacing(Type::px(10));
    card->body()->addWidget(bar);
    card->body()->addWidget(parts);
    card->body()->addWidget(Card::separator(card));
    card->body()->addWidget(stats);
    card->body()->addWidget(swapNote);
    card->body()->addStretch(1);
    top->addWidget(card, 1);
}

void MemoryPage::addPressure() {
    pressureCard = new Card(QStringLiteral("Memory pressure"), this);
    gauge = new Gauge(pressureCard);
    condition = new Badge(pressureCard);
    pressureFacts = new KeyValueList(pressureCard);
    pressureFacts->setMinimumWidth(Type::px(factsWidth));
    auto* facts = new QVBoxLayout;
    facts->setSpacing(Type::px(6));
    facts->addStretch(1);
    facts->addWidget(condition, 0, Qt::AlignLeading);
    facts->addWidget(pressureFacts, 0, Qt::AlignLeading);
    facts->addStretch(1);
    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(16));
    row->addWidget(gauge);
    row->addLayout(facts, 1);
    pressureCard->body()->addLayout(row, 1);
    top->addWidget(pressureCard);
}

void MemoryPage::addCharts() {
    charts = new QBoxLayout(QBoxLayout::LeftToRight);
    charts->setSpacing(Type::px(12));
    usedCard = new Card(QStringLiteral("Memory used"), this);
    usedLegend = new Legend(usedCard);
    usedCard->addControl(usedLegend);
    usedChart = new ResourceChart(QStringLiteral("Memory used"), usedCard);
    usedChart->setPlotHeight(Type::px(plotHeight));
    usedCard->body()->addWidget(usedChart, 1);
    swapCard = new Card(QStringLiteral("Pressure and swap"), this);
    swapLegend = new Legend(swapCard);
    swapCard->addControl(swapLegend);
    swapChart = new ResourceChart(QStringLiteral("Memory pressure"), swapCard);
    swapChart->setAxis({.kind = ChartAxis::Kind::percent, .label = shareText});
    swapChart->setPlotHeight(Type::px(plotHeight));
    swapCard->body()->addWidget(swapChart, 1);
    charts->addWidget(usedCard, 1);
    charts->addWidget(swapCard, 1);
    body()->addLayout(charts, 1);
}

void MemoryPage::addApplications() {
    applicationsCard = new Card(QStringLiteral("Applications"), this);
    applicationsCard->setFlush(true);
    auto* all = new LinkButton(QStringLiteral("All applications"), applicationsCard);
    applicationsCard->addControl(all);
    connect(all, &QAbstractButton::clicked, this, [this] { model().select(Page::applications); });
    applications = ResourceTable<MemoryAppRow, std::string>::make(
        "memory.applications", QStringLiteral("Applications by memory"), memoryAppColumns(), "memory",
        [](const MemoryAppRow& row) { return row.app->key; }, [this](const std::string& key) { openApp(model(), key); },
        model(), applicationsCard);
    applicationsCard->body()->addWidget(applications.holder);
    body()->addWidget(applicationsCard);
}

QWidget* MemoryPage::mainWidget() const {
    return applications.view;
}

void MemoryPage::refresh(const ModelChanges& changes) {
    if (!changes.snapshot)
        return;
    askForPeak();
    refreshFigures();
    refreshAxis();
    if (isLive())
        refreshCharts();
    refreshTable();
}

void MemoryPage::askForPeak() {
    const Date now = context.now();
    if (askedForPeak && now >= *askedForPeak && now - *askedForPeak < askAgain)
        return;
    askedForPeak = now;
    model().history().systemRows(Calendar::startOfDay(now), now,
                                 here(std::function([this](std::vector<SystemRow> rows) {
                                     peakToday = greatest(rows, &SystemRow::pressure);
                                     if (isAwake())
                                         refreshFigures();
                                 })));
}

void MemoryPage::refreshFigures() {
    MemoryFacts facts{.interval = interval(), .peakToday = peakToday};
    if (const auto since = model().alertEngine().pressureElevatedSince())
        facts.elevatedFor = state().snapshot->timestamp.seconds - *since;
    MemoryText shown = presentMemory(state(), facts, context.words);
    setSubtitle(shown.subtitle);
    bar->set(std::move(shown.bar), QStringLiteral("Memory by what it holds"));
    parts->set(std::move(shown.parts));
    stats->set(std::move(shown.stats));
    swapNote->setText(shown.swapNote);
    gauge->set(shown.pressure, shown.pressureValue, QStringLiteral("pressure"), shown.condition,
               QStringLiteral("Memory pressure"));
    condition->set(shown.condition, shown.conditionWord);
    pressureFacts->set(std::move(shown.pressureFacts));
    usedLegend->set(std::move(shown.usedLegend));
    swapLegend->set(std::move(shown.pressureLegend));
}

void MemoryPage::refreshAxis() {
    const std::uint64_t total = state().snapshot->memory.total;
    if (total == axisTotal)
        return;
    axisTotal = total;
    usedChart->setAxis(
        {.kind = ChartAxis::Kind::fixed, .most = static_cast<double>(total), .binary = true, .label = memoryAxisText});
}

void MemoryPage::refreshCharts() {
    const QString note = isLive() ? QString() : reach();
    usedCard->setNote(note);
    swapCard->setNote(note);
    draw(*usedChart, {{.series = Series::s4,
                       .name = QStringLiteral("Used"),
                       .live = LiveKey::memUsed,
                       .past = &SystemRow::memUsed,
                       .peak = &SystemRow::memUsedMax,
                       .text = bytesText}});
    std::vector<Line> lines{{.series = Series::s5,
                             .name = QStringLiteral("Pressure"),
                             .live = LiveKey::memPressure,
                             .past = &SystemRow::pressure,
                             .scale = 1 / percentsOfAll,
                             .text = shareText}};
    if (const auto swapTotal = static_cast<double>(state().snapshot->memory.swapTotal); swapTotal > 0)
        lines.push_back({.series = Series::s2,
                         .name = QStringLiteral("Swap"),
                         .live = LiveKey::swap,
                         .past = &SystemRow::swapUsed,
                         .scale = 1 / swapTotal,
                         .isDashed = true,
                         .text = [swapTotal](double share) { return bytesText(share * swapTotal); }});
    draw(*swapChart, lines);
}

void MemoryPage::refreshTable() {
    const double now = state().snapshot->timestamp.seconds;
    std::optional<double> watched;
    const auto change = [&](const ApplicationSnapshot& app) {
        const std::vector<TimedValue> series = model().alertEngine().memorySeries(app.key);
        if (!series.empty())
            watched = std::max(watched.value_or(0), now - series.front().time);
        return changeOverHour(series, now);
    };
    applications.show(memoryAppRows(*state().snapshot, change), state(),
                      unavailableText(QStringLiteral("Applications"), context.words));
    applicationsCard->setNote(watchedText(watched));
}

void MemoryPage::narrowChanged() {
    const auto direction = isNarrow() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    top->setDirection(direction);
    charts->setDirection(direction);
    pressureCard->setMinimumWidth(isNarrow() ? 0 : Type::px(sideWidth));
    pressureCard->setMaximumWidth(isNarrow() ? QWIDGETSIZE_MAX : Type::px(sideWidth));
}

} // namespace ostrivane
