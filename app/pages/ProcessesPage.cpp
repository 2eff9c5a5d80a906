#include "app/pages/ProcessesPage.hpp"

#include "app/pages/EmptyText.hpp"
#include "app/pages/Links.hpp"
#include "app/pages/ProcessPanelView.hpp"
#include "app/pages/ProcessesText.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/FilterField.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace ostrivane {

namespace {

constexpr double lockSize = 14;
constexpr double panelIcon = 22;

class Lock final : public QWidget {
public:
    explicit Lock(QWidget* owner) : QWidget(owner) { setFixedSize(Type::px(lockSize), Type::px(lockSize)); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawPixmap(rect(), Icons::pixmap("lock", width(), Theme::current().text2, devicePixelRatioF()));
    }
};

} // namespace

ProcessesPage::ProcessesPage(PageContext& given, QWidget* parent)
    : PageView(Page::processes, given, parent),
      rows(new RowsModel<ProcessRow, std::int32_t>(
          processColumns(heat), [](const ProcessRow& row) { return row.process->pid; }, this)) {
    addStrip(makeToolbar());
    setBody(makeBody(), true);
    rows->sort(2, Qt::DescendingOrder);
    table->setRows(rows);

    connect(filter, &QLineEdit::textChanged, this, [this] { applyFilter(); });
    connect(scope, &SegmentedControl::indexChosen, this, [this] { applyFilter(); });
    connect(empty, &EmptyState::actionTriggered, this, [this] { clearFilter(); });
    connect(table, &TableView::orderHeldChanged, heldNotice, &QWidget::setVisible);
    connect(table, &TableView::selectionMoved, this, [this](int row) { rowSelected(row); });
    connect(table, &TableView::menuWanted, this, [this](int row, QPoint global) { showMenu(row, global); });
    connect(panel, &ProcessPanelView::revealWanted, this, [this] {
        if (const ProcessSnapshot* process = selected())
            reveal(*process);
    });
}

QWidget* ProcessesPage::makeToolbar() {
    auto* toolbar = new QWidget(this);
    filter = new FilterField(QStringLiteral("Filter by name or pid"), toolbar);
    filter->setMaximumWidth(Type::px(260));
    scope = new SegmentedControl(QStringLiteral("Processes"),
                                 {QStringLiteral("All"), QStringLiteral("Mine"), QStringLiteral("Developer")}, toolbar);
    heldNotice = new QWidget(toolbar);
    auto* words = new TextLabel(TypeRole::secondary, Tone::text2, heldNotice);
    words->setText(QStringLiteral("Order held while the pointer is over the list"));
    auto* notice = new QHBoxLayout(heldNotice);
    notice->setContentsMargins(0, 0, 0, 0);
    notice->setSpacing(Type::px(6));
    notice->addWidget(new Lock(heldNotice));
    notice->addWidget(words);
    heldNotice->hide();

    auto* line = new QHBoxLayout(toolbar);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(Type::px(12));
    line->addWidget(filter, 1);
    line->addWidget(scope);
    line->addStretch(1);
    line->addWidget(heldNotice);
    return toolbar;
}

QWidget* ProcessesPage::makeBody() {
    auto* body = new QWidget(this);
    auto* card = new Card({}, body);
    card->setFlush(true);
    table = new TableView("processes", QStringLiteral("Processes"), &model().settings().defaults(), card);
    empty = new EmptyState({}, card);
    pane = new QStackedWidget(card);
    pane->addWidget(table);
    pane->addWidget(empty);
    panel = new ProcessPanelView(card);
    panel->hide();
    card->body()->addWidget(pane, 1);
    card->body()->addWidget(panel);

    note = new TextLabel(TypeRole::secondary, Tone::text2, body);
    note->setWraps(true);
    note->setText(processesNote());
    restricted = new TextLabel(TypeRole::secondary, Tone::text2, body);
    restricted->setElideMode(Qt::ElideNone);
    auto* foot = new QHBoxLayout;
    foot->setContentsMargins(Type::px(2), 0, Type::px(2), 0);
    foot->setSpacing(Type::px(16));
    foot->addWidget(note, 1);
    foot->addWidget(restricted);

    auto* all = new QVBoxLayout(body);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(Type::px(10));
    all->addWidget(card, 1);
    all->addLayout(foot);
    return body;
}

QWidget* ProcessesPage::mainWidget() const {
    return table;
}

QWidget* ProcessesPage::filterField() {
    return filter;
}

bool ProcessesPage::closeDetail() {
    if (!model().selectedProcessPID())
        return false;
    model().selectProcess(std::nullopt);
    return true;
}

void ProcessesPage::narrowChanged() {
    table->setNarrow(isNarrow());
}

void ProcessesPage::refresh(const ModelChanges& changes) {
    if (changes.snapshot)
        showRows();
    if (changes.snapshot || changes.navigation) {
        showSelection();
        showPanel();
    }
}

void ProcessesPage::showRows() {
    const SharedSnapshot& snapshot = state().snapshot;
    std::vector<ProcessRow> present = processRows(*snapshot);
    heat = ProcessHeat::of(present);
    if (!state().hasFirstSample)
        present.clear();
    rows->assign(std::move(present), snapshot);
    setSubtitle(state().hasFirstSample ? runningText(*snapshot) : QString());
    restricted->setText(restrictedText(*snapshot));
    applyPane();
}

void ProcessesPage::applyPane() {
    const EmptyText words = emptyText(QStringLiteral("Processes"), state().hasFirstSample,
                                      !state().snapshot->processes.empty(), context.words);
    empty->set(words.title, {}, words.action);
    pane->setCurrentWidget(rows->rowCount() == 0 ? static_cast<QWidget*>(empty) : table);
}

bool ProcessesPage::isFiltered() const {
    return scope->index() != 0 || !filter->text().trimmed().isEmpty();
}

void ProcessesPage::applyFilter() {
    const auto chosen = static_cast<ProcessScope>(scope->index());
    const QString wanted = filter->text().trimmed();
    if (isFiltered())
        rows->setFilter([chosen, wanted](const ProcessRow& row) { return isListed(row, chosen, wanted); });
    else
        rows->setFilter({});
    applyPane();
    showSelection();
}

void ProcessesPage::clearFilter() {
    scope->setIndex(0);
    filter->clear();
    applyFilter();
}

const ProcessSnapshot* ProcessesPage::selected() const {
    const auto& pid = model().selectedProcessPID();
    return pid ? findProcess(*state().snapshot, *pid) : nullptr;
}

/// Makes the table's selection the model's. A process that has just been chosen elsewhere is shown, whatever is
/// filtered; the latest snapshot need not have it yet.
void ProcessesPage::showSelection() {
    const std::optional<std::int32_t> pid = model().selectedProcessPID();
    const bool isNew = std::exchange(shownPID, pid) != pid;
    if (isNew && pid && !rows->indexOf(*pid) && isFiltered())
        clearFilter();
    const QSignalBlocker quiet(table); // it follows
    table->selectRow(pid ? rows->indexOf(*pid).value_or(-1) : -1);
}

void ProcessesPage::showPanel() {
    const auto& pid = model().selectedProcessPID();
    const ProcessSnapshot* process = selected();
    if (process)
        lastSelected = *process;
    else if (!pid || !lastSelected || lastSelected->pid != *pid)
        lastSelected.reset();
    panel->setVisible(lastSelected.has_value());
    if (!lastSelected)
        return;
    if (!process)
        return panel->set(presentEnded(*lastSelected), false);
    panel->set(presentProcess(*process, *state().snapshot, QDir::homePath().toStdString()),
               context.reveal && process->path);
    const ProcessRow row{.process = process, .app = state().app(process->appKey)};
    panel->setIcon(processIcon(row, Type::px(panelIcon), devicePixelRatioF()));
}

void ProcessesPage::rowSelected(int row) {
    if (const auto pid = rows->id(row))
        model().selectProcess(pid);
    else if (model().selectedProcessPID() == shownPID && !selected())
        // It has ended, and its row is gone; one that is only filtered out stays selected.
        model().selectProcess(std::nullopt);
}

void ProcessesPage::reveal(const ProcessSnapshot& process) {
    if (context.reveal && process.path)
        context.reveal(*process.path);
}

void ProcessesPage::showMenu(int row, QPoint global) {
    const ProcessRow* shown = rows->row(row);
    if (!shown)
        return;
    const ProcessSnapshot process = *shown->process; // the menu outlives the snapshot
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& title, auto act) {
        connect(menu->addAction(title), &QAction::triggered, this, std::move(act));
    };
    const auto copy = [](const QString& copied) { return [copied] { QGuiApplication::clipboard()->setText(copied); }; };
    if (shown->app)
        add(QStringLiteral("Show Application"), [this, key = process.appKey] { openApp(model(), key); });
    if (const ProcessSnapshot* parent = parentOf(*state().snapshot, process))
        add(QStringLiteral("Show Parent"), [this, pid = parent->pid] { model().selectProcess(pid); });
    if (context.reveal && process.path)
        add(QStringLiteral("Reveal"), [this, process] { reveal(process); });
    add(QStringLiteral("Copy PID"), copy(QString::number(process.pid)));
    if (process.commandLine)
        add(QStringLiteral("Copy Command Line"), copy(text(*process.commandLine)));
    menu->popup(global);
}

} // namespace ostrivane
