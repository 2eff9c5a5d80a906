#include "app/pages/GPUPage.hpp"

#include "app/pages/GPUText.hpp"
#include "app/pages/Links.hpp"
#include "app/pages/ResourceChart.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/KeyValueList.hpp"
#include "app/widgets/Legend.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"
#include "core/model/Formatters.hpp"

#include <QBoxLayout>

#include <utility>

namespace ostrivane {

namespace {

constexpr double sideWidth = 236;
constexpr double plotHeight = 260;
constexpr double heatHeight = 120;

QString shareText(double fraction) {
    return text(Formatters::percent(fraction));
}

QString temperatureText(double celsius) {
    return text(Formatters::temperature(celsius));
}

} // namespace

GPUPage::GPUPage(PageContext& given, QWidget* parent) : ResourcePage(Page::gpu, given, parent) {
    missing = new EmptyState(Icons::nameOf(Page::gpu), this);
    missing->set(QStringLiteral("GPU figures are unavailable on this machine."));
    missing->hide();
    content = new QWidget(this);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(12));
    top = new QBoxLayout(QBoxLayout::LeftToRight);
    top->setSpacing(Type::px(12));
    column->addLayout(top, 1);
    addLoad();
    addToday();
    addApplications();
    body()->addWidget(missing, 1);
    body()->addWidget(content, 1);
    narrowChanged();
}

void GPUPage::addLoad() {
    auto* card = new Card({}, content);
    usage = new TextLabel(TypeRole::hero, Tone::text, card);
    usage->setTabular(true);
    usage->setReserved(QStringLiteral("100%"));
    auto* inUse = new TextLabel(TypeRole::secondary, Tone::text2, card);
    inUse->setText(QStringLiteral("in use"));
    inUse->setElideMode(Qt::ElideNone);
    engines = new Legend(card);
    reachLabel = new TextLabel(TypeRole::caption, Tone::text2, card);
    reachLabel->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    auto* head = new QHBoxLayout;
    head->setSpacing(Type::px(8));
    head->addWidget(usage);
    head->addWidget(inUse);
    head->addSpacing(Type::px(14));
    head->addWidget(engines, 1);
    head->addWidget(reachLabel);
    chart = new ResourceChart(QStringLiteral("GPU"), card);
    chart->setAxis({.kind = ChartAxis::Kind::percent, .label = shareText});
    chart->setPlotHeight(Type::px(plotHeight));
    card->body()->setSpacing(Type::px(8));
    card->body()->addLayout(head);
    card->body()->addWidget(chart, 1);
    top->addWidget(card, 1);
}

void GPUPage::addToday() {
    todayCard = new Card(QStringLiteral("Today"), content);
    today = new KeyValueList(todayCard);
    memoryLine = Card::separator(todayCard);
    memory = new KeyValueList(todayCard);
    temperature = new KeyValueList(todayCard);
    heatChart = new ResourceChart(QStringLiteral("GPU temperature"), todayCard);
    heatChart->setAxis({.kind = ChartAxis::Kind::temperature, .label = temperatureText});
    heatChart->setPlotHeight(Type::px(heatHeight));
    QVBoxLayout* lines = todayCard->body();
    lines->setSpacing(Type::px(6));
    lines->addWidget(today);
    lines->addWidget(memoryLine);
    lines->addWidget(memory);
    lines->addWidget(Card::separator(todayCard));
    lines->addWidget(temperature);
    lines->addWidget(heatChart, 1);
    lines->addStretch(0);
    top->addWidget(todayCard);
}

void GPUPage::addApplications() {
    auto* card = new Card(QStringLiteral("Applications using the GPU"), content);
    card->setFlush(true);
    auto* all = new LinkButton(QStringLiteral("All applications"), card);
    card->addControl(all);
    connect(all, &QAbstractButton::clicked, this, [this] { model().select(Page::applications); });
    applications = ResourceTable<GPUAppRow, std::string>::make(
        "gpu.applications", QStringLiteral("Applications using the GPU"), gpuAppColumns(), "gpu",
        [](const GPUAppRow& row) { return row.app->key; }, [this](const std::string& key) { openApp(model(), key); },
        model(), card);
    noApplications = new EmptyState({}, card);
    noApplications->hide();
    card->body()->addWidget(applications.holder);
    card->body()->addWidget(noApplications);
    content->layout()->addWidget(card);
}

QWidget* GPUPage::mainWidget() const {
    return applications.view;
}

void GPUPage::refresh(const ModelChanges& changes) {
    if (!changes.snapshot && !changes.totals)
        return;
    GPUText shown = presentGPU(state());
    setSubtitle(shown.subtitle);
    missing->setVisible(!shown.isAvailable);
    content->setVisible(shown.isAvailable);
    setRangesShown(shown.isAvailable);
    if (!shown.isAvailable)
        return;
    usage->setText(shown.usage);
    engines->set(std::move(shown.engines));
    today->set(std::move(shown.today));
    memoryLine->setVisible(!shown.memory.empty());
    memory->setVisible(!shown.memory.empty());
    memory->set(std::move(shown.memory));
    temperature->set(std::move(shown.temperature));
    heatChart->setVisible(shown.hasTemperature);
    if (!changes.snapshot)
        return;
    if (isLive())
        refreshCharts();
    noApplications->set(shown.applicationsNote);
    noApplications->setVisible(!shown.hasApplications);
    applications.holder->setVisible(shown.hasApplications);
    applications.show(gpuAppRows(*state().snapshot), state(), shown.applicationsNote);
}

void GPUPage::refreshCharts() {
    reachLabel->setText(reach());
    draw(*chart, {{.series = Series::s3,
                   .name = QStringLiteral("GPU"),
                   .live = LiveKey::gpu,
                   .past = &SystemRow::gpu,
                   .peak = &SystemRow::gpuMax,
                   .text = shareText}});
    draw(*heatChart, {{.series = Series::s5,
                       .name = QStringLiteral("Temperature"),
                       .live = LiveKey::gpuTemp,
                       .past = &SystemRow::gpuTemp,
                       .text = temperatureText}});
}

void GPUPage::narrowChanged() {
    top->setDirection(isNarrow() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    todayCard->setMinimumWidth(isNarrow() ? 0 : Type::px(sideWidth));
    todayCard->setMaximumWidth(isNarrow() ? QWIDGETSIZE_MAX : Type::px(sideWidth));
}

} // namespace ostrivane
