#include "app/pages/AppDetail.hpp"

#include "app/model/AppModel.hpp"
#include "app/pages/AppHistoryView.hpp"
#include "app/widgets/Accessibility.hpp"
#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/Scrolling.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"
#include "core/model/Formatters.hpp"

#include <QHBoxLayout>
#include <QPainter>
#include <QPointer>
#include <QScrollArea>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double iconSize = 40;
constexpr double padding = 16;
constexpr double tableHeadHeight = 28;
constexpr double denseRowHeight = 25;
constexpr int fewestRows = 5;

} // namespace

/// The application's picture.
class AppDetail::AppIcon final : public QWidget {
public:
    explicit AppIcon(QWidget* parent) : QWidget(parent) { setFixedSize(Type::px(iconSize), Type::px(iconSize)); }

    void set(const AppHead& next) {
        if (shown.key == next.key && shown.name == next.name && shown.bundlePath == next.bundlePath)
            return;
        shown = next;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawPixmap(
            0, 0, AppIcons::pixmap(shown.key, shown.name, shown.bundlePath, width(), devicePixelRatioF()));
    }

private:
    AppHead shown;
};

AppDetail::AppDetail(PageContext& given, QWidget* parent) : QWidget(parent), context(given) {
    setAccessibleName(QStringLiteral("Application"));
    stats = new StatGrid(4, this);
    history = new AppHistoryView(context, this);
    makeTable();

    auto* upper = new QVBoxLayout;
    const int side = Type::px(padding);
    upper->setContentsMargins(side, Type::px(14), side, Type::px(12));
    upper->setSpacing(Type::px(12));
    upper->addWidget(makeHead());
    upper->addLayout(actions);
    upper->addWidget(stats);
    upper->addWidget(Card::separator(this));
    upper->addWidget(history);

    auto* content = new QWidget(this);
    auto* all = new QVBoxLayout(content);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addLayout(upper);
    all->addWidget(Card::separator(content));
    all->addWidget(table, 1);

    auto* card = new Card(QString(), this);
    card->setFlush(true);
    card->body()->addWidget(scrolling(content, card));
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(card);
}

QWidget* AppDetail::makeHead() {
    auto* line = new QWidget(this);
    icon = new AppIcon(line);
    name = new TextLabel(TypeRole::statValue, Tone::text, line);
    summary = new TextLabel(TypeRole::secondary, Tone::text2, line);
    closer = new IconButton("close", QStringLiteral("Close Details"), line);
    connect(closer, &QAbstractButton::clicked, this, &AppDetail::closeWanted);

    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addWidget(name);
    words->addWidget(summary);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Type::px(12));
    row->addWidget(icon);
    row->addLayout(words, 1);
    row->addWidget(closer, 0, Qt::AlignTop);

    reveal = new PushButton(QStringLiteral("Reveal"), ButtonKind::plain, this);
    reveal->setIconName("reveal");
    connect(reveal, &QAbstractButton::clicked, this, [this] {
        if (head && head->revealPath)
            context.reveal(*head->revealPath);
    });
    actions = new QHBoxLayout;
    actions->setSpacing(Type::px(8));
    actions->addWidget(reveal);
    actions->addStretch(1);
    return line;
}

void AppDetail::makeTable() {
    processes = new ProcessRows(
        appProcessColumns(), [](const ProcessSnapshot* process) { return process->pid; }, this);
    table = new TableView("appProcesses", QStringLiteral("Processes"), &context.model.settings().defaults(), this);
    table->setRows(processes);
    table->setDense(true);
    table->setMinimumHeight(Type::px(tableHeadHeight + fewestRows * denseRowHeight));
    processes->sort(3, Qt::DescendingOrder); // memory
    connect(table, &QAbstractItemView::clicked, this, [this](const QModelIndex& cell) { openProcess(cell.row()); });
    connect(table, &TableView::rowActivated, this, &AppDetail::openProcess);
}

void AppDetail::openProcess(int row) {
    if (const auto pid = processes->id(row); pid && !processes->isGone(row))
        Q_EMIT processWanted(*pid);
}

void AppDetail::setApp(const std::optional<std::string>& key) {
    if (key == (head ? std::optional(head->key) : std::nullopt))
        return;
    const AppState& state = context.model.state();
    head = key ? std::optional(appHead(state, *key, std::nullopt)) : std::nullopt;
    history->setApp(key);
    if (head && !state.app(key))
        askForName();
    refresh();
}

/// Of an application that ran in the past, only the history knows what it was called.
void AppDetail::askForName() {
    context.model.history().appName(head->key, [post = context.onMainThread, detail = QPointer<AppDetail>(this),
                                                key = head->key](std::optional<std::string> known) {
        post([detail, key, known = std::move(known)] {
            if (!detail || !known || !detail->head || detail->head->key != key)
                return;
            detail->head->name = *known;
            detail->refresh();
        });
    });
}

void AppDetail::refresh() {
    if (!head)
        return;
    const AppState& state = context.model.state();
    const ApplicationSnapshot* app = state.app(head->key);
    head = appHead(state, head->key, head);
    icon->set(*head);
    name->setText(text(head->name));
    nameForAccessibility(*reveal, QStringLiteral("Reveal %1").arg(name->text()));
    reveal->setVisible(context.reveal && head->revealPath);
    reveal->setEnabled(app != nullptr);
    const AppDetailText shown = presentAppDetail(state, app);
    summary->setText(shown.summary);
    stats->set(shown.stats);
    const bool hasLongWords =
        std::ranges::any_of(shown.stats, [](const Stat& stat) { return stat.value == text(Formatters::unavailable); });
    stats->setColumns(hasLongWords && !isAlone ? 2 : 4);
    processes->assign(app ? state.processes(*app) : std::vector<const ProcessSnapshot*>(), state.snapshot);
}

void AppDetail::setAwake(bool awake) {
    history->setAwake(awake);
}

void AppDetail::setAlone(bool alone) {
    isAlone = alone;
    closer->setVisible(!alone);
    history->setSideBySide(alone);
    refresh();
}

} // namespace ostrivane
