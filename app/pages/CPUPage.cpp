#include "app/pages/CPUPage.hpp"

#include "app/pages/CPUText.hpp"
#include "app/pages/EmptyText.hpp"
#include "app/pages/Links.hpp"
#include "app/pages/ResourceChart.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/CoreGrid.hpp"
#include "app/widgets/InfoNote.hpp"
#include "app/widgets/KeyValueList.hpp"
#include "app/widgets/Legend.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"
#include "core/model/Formatters.hpp"

#include <QBoxLayout>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace ostrivane {

namespace {

constexpr double sideWidth = 236;
constexpr double plotHeight = 222;

QString shareText(double fraction) {
    return text(Formatters::percent(fraction));
}

} // namespace

CPUPage::CPUPage(PageContext& given, QWidget* parent) : ResourcePage(Page::cpu, given, parent) {
    addLoad();
    addCores();
    addBusiest();
    narrowChanged();
}

void CPUPage::addLoad() {
    auto* chartCard = new Card({}, this);
    usage = new TextLabel(TypeRole::hero, Tone::text, chartCard);
    usage->setTabular(true);
    usage->setReserved(QStringLiteral("100%"));
    auto* inUse = new TextLabel(TypeRole::secondary, Tone::text2, chartCard);
    inUse->setText(QStringLiteral("in use"));
    inUse->setElideMode(Qt::ElideNone);
    parts = new Legend(chartCard);
    reachLabel = new TextLabel(TypeRole::caption, Tone::text2, chartCard);
    reachLabel->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    auto* head = new QHBoxLayout;
    head->setSpacing(Type::px(8));
    head->addWidget(usage);
    head->addWidget(inUse);
    head->addSpacing(Type::px(14));
    head->addWidget(parts, 1);
    head->addWidget(reachLabel);
    chart = new ResourceChart(QStringLiteral("CPU"), chartCard);
    chart->setAxis({.kind = ChartAxis::Kind::percent, .label = shareText});
    chart->setStacked(true);
    chart->setPlotHeight(Type::px(plotHeight));
    chartCard->body()->setSpacing(Type::px(8));
    chartCard->body()->addLayout(head);
    chartCard->body()->addWidget(chart, 1);

    loadCard = new Card(QStringLiteral("Load"), this);
    loads = new QBoxLayout(QBoxLayout::TopToBottom);
    loads->setSpacing(Type::px(6));
    for (std::size_t index = 0; index < loadLists.size(); ++index) {
        if (index > 0) {
            loadLines[index - 1] = Card::separator(loadCard);
            loads->addWidget(loadLines[index - 1]);
        }
        loadLists[index] = new KeyValueList(loadCard);
        loads->addWidget(loadLists[index], 1, Qt::AlignTop);
    }
    note = new InfoNote(loadCard);
    loadCard->body()->addLayout(loads);
    loadCard->body()->addWidget(note);
    loadCard->body()->addStretch(1);

    top = new QBoxLayout(QBoxLayout::LeftToRight);
    top->setSpacing(Type::px(12));
    top->addWidget(chartCard, 1);
    top->addWidget(loadCard);
    body()->addLayout(top, 1);
}

void CPUPage::addCores() {
    auto* card = new Card(QStringLiteral("Cores"), this);
    groups = new Legend(card);
    card->addControl(groups);
    cores = new CoreGrid(card);
    card->body()->addWidget(cores);
    body()->addWidget(card);
}

void CPUPage::addBusiest() {
    busiest = new Card({}, this);
    busiest->setFlush(true);
    subject = new SegmentedControl(QStringLiteral("Busiest"),
                                   {QStringLiteral("Processes"), QStringLiteral("Applications")}, busiest);
    busiest->addControl(subject);
    all = new LinkButton({}, busiest);
    busiest->addControl(all);
    processes = ResourceTable<CPUProcessRow, std::int32_t>::make(
        "cpu.processes", QStringLiteral("Busiest processes"), cpuProcessColumns(), "cpu",
        [](const CPUProcessRow& row) { return row.process->pid; },
        [this](std::int32_t pid) { openProcess(model(), pid); }, model(), busiest);
    processes.view->setNarrowHides({"threads", "user"});
    applications = ResourceTable<CPUAppRow, std::string>::make(
        "cpu.applications", QStringLiteral("Busiest applications"), cpuAppColumns(), "cpu",
        [](const CPUAppRow& row) { return row.app->key; }, [this](const std::string& key) { openApp(model(), key); },
        model(), busiest);
    applications.view->setNarrowHides({"threads"});
    busiest->body()->addWidget(processes.holder);
    busiest->body()->addWidget(applications.holder);
    body()->addWidget(busiest);

    connect(subject, &SegmentedControl::indexChosen, this, [this] {
        showBusiest();
        refreshTables();
    });
    connect(all, &QAbstractButton::clicked, this,
            [this] { model().select(subject->index() == 0 ? Page::processes : Page::applications); });
    showBusiest();
}

void CPUPage::showBusiest() {
    const bool ofProcesses = subject->index() == 0;
    busiest->setTitle(ofProcesses ? QStringLiteral("Busiest processes") : QStringLiteral("Busiest applications"));
    all->setText(ofProcesses ? QStringLiteral("All processes") : QStringLiteral("All applications"));
    processes.holder->setVisible(ofProcesses);
    applications.holder->setVisible(!ofProcesses);
}

QWidget* CPUPage::mainWidget() const {
    return subject->index() == 0 ? processes.view : applications.view;
}

void CPUPage::refresh(const ModelChanges& changes) {
    if (!changes.snapshot && !changes.totals)
        return;
    CPUText shown = presentCPU(state(), context.words);
    setSubtitle(shown.subtitle);
    usage->setText(shown.usage);
    parts->set(std::move(shown.parts));
    loadLists[0]->set(std::move(shown.averages));
    loadLists[1]->set(std::move(shown.loads));
    loadLists[2]->set(std::move(shown.machine));
    note->setText(shown.note);
    groups->set(std::move(shown.groups));
    cores->setPerRow(coresPerRow(shown.cores.size(), isNarrow()));
    cores->set(std::move(shown.cores));
    if (changes.snapshot) {
        if (isLive())
            refreshCharts();
        refreshTables();
    }
}

void CPUPage::refreshCharts() {
    reachLabel->setText(reach());
    // The parts lie on top of each other, and the highest load is that of both together.
    draw(*chart, {{.series = Series::s2,
                   .name = QStringLiteral("System"),
                   .live = LiveKey::cpuSystem,
                   .past = &SystemRow::cpuSystem,
                   .text = shareText},
                  {.series = Series::s1,
                   .name = QStringLiteral("User"),
                   .live = LiveKey::cpuUser,
                   .past = &SystemRow::cpuUser,
                   .peak = [](const SystemRow& row) { return std::max(row.cpuUser, row.cpuMax - row.cpuSystem); },
                   .text = shareText}});
}

void CPUPage::refreshTables() {
    if (subject->index() == 0)
        processes.show(cpuProcessRows(*state().snapshot), state(),
                       unavailableText(QStringLiteral("Processes"), context.words));
    else
        applications.show(cpuAppRows(*state().snapshot), state(),
                          unavailableText(QStringLiteral("Applications"), context.words));
}

void CPUPage::narrowChanged() {
    const bool isTight = isNarrow();
    top->setDirection(isTight ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    loads->setDirection(isTight ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    loads->setSpacing(Type::px(isTight ? 24 : 6));
    for (QWidget* line : loadLines)
        line->setVisible(!isTight);
    loadCard->setMinimumWidth(isTight ? 0 : Type::px(sideWidth));
    loadCard->setMaximumWidth(isTight ? QWIDGETSIZE_MAX : Type::px(sideWidth));
    cores->setPerRow(coresPerRow(state().snapshot->cpu.cores.size(), isTight));
    processes.view->setNarrow(isTight);
    applications.view->setNarrow(isTight);
}

} // namespace ostrivane
