#include "app/pages/SessionDetail.hpp"

#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/StatGrid.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>
#include <utility>

namespace ostrivane {

namespace {

constexpr double statWidth = 150; // at which a column has room for its words
constexpr int mostColumns = 4;
constexpr int fewestColumns = 2;

template <class Line>
std::vector<const Line*> pointers(const std::vector<Line>& lines) {
    std::vector<const Line*> list;
    list.reserve(lines.size());
    for (const Line& line : lines)
        list.push_back(&line);
    return list;
}

} // namespace

SessionDetail::SessionDetail(KeyValueStore* store,
                             std::function<std::optional<std::string>(const std::string& key)> bundlePath,
                             QWidget* parent)
    : QWidget(parent) {
    auto* card = new Card({}, this);
    card->setFlush(true);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(card);
    card->body()->setSpacing(0);
    card->body()->addWidget(makeHead());

    using AppLine = SessionSummary::AppLine;
    using ProcessLine = SessionSummary::ProcessLine;
    apps = new RowsModel<const AppLine*, std::string>(
        sessionAppColumns(std::move(bundlePath)), [](const AppLine* const& line) { return line->key; }, this);
    apps->sort(1, Qt::DescendingOrder);
    appTable = new TableView("session.apps", QStringLiteral("Applications of the session"), store, card);
    appTable->setRows(apps);
    connect(appTable, &TableView::rowActivated, this, [this](int row) {
        if (const auto key = apps->id(row))
            Q_EMIT appActivated(*key);
    });
    processes = new RowsModel<const ProcessLine*, std::string>(
        sessionProcessColumns(),
        [](const ProcessLine* const& line) { return std::to_string(line->pid) + ' ' + line->name; }, this);
    processes->sort(2, Qt::DescendingOrder);
    processTable = new TableView("session.processes", QStringLiteral("Processes of the session"), store, card);
    processTable->setRows(processes);
    card->body()->addWidget(appTable);
    card->body()->addWidget(processTable);
    card->body()->addStretch();
}

QWidget* SessionDetail::makeHead() {
    auto* head = new QWidget(this);
    auto* column = new QVBoxLayout(head);
    column->setContentsMargins(Type::px(14), Type::px(12), Type::px(14), Type::px(12));
    column->setSpacing(Type::px(12));
    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    name = new TextLabel(TypeRole::statValue, Tone::text, head);
    when = new TextLabel(TypeRole::secondary, Tone::text2, head);
    titles->addWidget(name);
    titles->addWidget(when);
    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(12));
    row->addLayout(titles, 1);
    remove = new PushButton(QStringLiteral("Delete…"), ButtonKind::destructive, head);
    connect(remove, &QAbstractButton::clicked, this, &SessionDetail::deleteWanted);
    row->addWidget(remove);
    column->addLayout(row);
    problem = new TextLabel(TypeRole::body, Tone::text2, head);
    problem->setWraps(true);
    column->addWidget(problem);
    stats = new StatGrid(mostColumns, head);
    column->addWidget(stats);
    column->addWidget(makeNames());
    return head;
}

QWidget* SessionDetail::makeNames() {
    names = new QWidget(this);
    auto* column = new QVBoxLayout(names);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(12));
    column->addWidget(Card::separator(names));
    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(8));
    const auto add = [&](const QString& title, TextLabel*& caption, TextLabel*& list) {
        caption = new TextLabel(TypeRole::secondary, Tone::text2, names);
        caption->setElideMode(Qt::ElideNone);
        caption->setText(title);
        list = new TextLabel(TypeRole::secondary, Tone::text, names);
        row->addWidget(caption);
        row->addWidget(list);
    };
    add(QStringLiteral("Opened"), openedTitle, opened);
    row->addSpacing(Type::px(16));
    add(QStringLiteral("Quit"), quitTitle, quit);
    row->addStretch();
    column->addLayout(row);
    return names;
}

void SessionDetail::set(const SessionText& session) {
    name->setText(session.name);
    when->setText(session.when);
    problem->setText(session.problem);
    problem->setVisible(!session.problem.isEmpty());
    remove->setAccessibleName(QStringLiteral("Delete the session “%1”").arg(session.name));
    stats->set(session.stats);
    stats->setVisible(!session.stats.empty());
    opened->setText(session.opened);
    quit->setText(session.quit);
    for (QWidget* part : {openedTitle, opened})
        part->setVisible(!session.opened.isEmpty());
    for (QWidget* part : {quitTitle, quit})
        part->setVisible(!session.quit.isEmpty());
    names->setVisible(!session.opened.isEmpty() || !session.quit.isEmpty());

    const auto kept = std::make_shared<const SessionSummary>(session.summary.value_or(SessionSummary()));
    appTable->setVisibleRows(static_cast<int>(kept->apps.size()));
    appTable->setVisible(!kept->apps.empty());
    apps->assign(pointers(kept->apps), kept);
    processTable->setVisibleRows(static_cast<int>(kept->processes.size()));
    processTable->setVisible(!kept->processes.empty());
    processes->assign(pointers(kept->processes), kept);
}

void SessionDetail::setDeletable(bool deletable) {
    remove->setVisible(deletable);
}

void SessionDetail::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    stats->setColumns(std::clamp(width() / std::max(Type::px(statWidth), 1), fewestColumns, mostColumns));
}

} // namespace ostrivane
