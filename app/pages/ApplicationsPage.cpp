#include "app/pages/ApplicationsPage.hpp"

#include "app/pages/AppDetail.hpp"
#include "app/pages/EmptyText.hpp"
#include "app/pages/Links.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/FilterField.hpp"
#include "app/widgets/InfoNote.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TableView.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"

#include <QClipboard>
#include <QComboBox>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QStackedWidget>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double detailWidth = 386;
constexpr double filterWidth = 220;
constexpr double narrowFilterWidth = 160;
constexpr ApplicationSort firstSort = ApplicationSort::memory;

/// Two rows of controls beside each other, or below where there is no room for that.
class Toolbar final : public QWidget {
public:
    explicit Toolbar(QWidget* owner) : QWidget(owner), rows(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
        rows->setContentsMargins(0, 0, 0, 0);
        rows->setSpacing(Type::px(12));
        for (QHBoxLayout** row : {&first, &second}) {
            *row = new QHBoxLayout;
            (*row)->setSpacing(Type::px(12));
        }
        rows->addLayout(first);
        rows->addLayout(second, 1);
    }
    QSize minimumSizeHint() const override {
        return {std::max(first->minimumSize().width(), second->minimumSize().width()),
                QWidget::minimumSizeHint().height()};
    }

    QHBoxLayout* first = nullptr;
    QHBoxLayout* second = nullptr;

protected:
    bool event(QEvent* happened) override {
        if (happened->type() == QEvent::Resize || happened->type() == QEvent::LayoutRequest) {
            const int beside = first->minimumSize().width() + rows->spacing() + second->minimumSize().width();
            rows->setDirection(beside > width() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
        }
        return QWidget::event(happened);
    }

private:
    QBoxLayout* rows;
};

/// The place of a sort's column among all.
int columnOf(ApplicationSort sort) {
    static const std::vector<TableColumn<ApplicationRow>> columns = applicationColumns(PlatformWords::Linux);
    const auto found = std::ranges::find(columns, rawValue(sort), &TableColumn<ApplicationRow>::id);
    return static_cast<int>(found - columns.begin());
}

} // namespace

ApplicationsPage::ApplicationsPage(PageContext& given, QWidget* parent) : PageView(Page::applications, given, parent) {
    setSubtitle(QStringLiteral("Every helper, renderer and background process rolled up under the app that owns it."));
    toolbar = makeToolbar();
    makeTable();
    addStrip(toolbar);
    setBody(makeBody(), true);
    sortBy(firstSort);
    arrange();
}

QWidget* ApplicationsPage::makeToolbar() {
    auto* bar = new Toolbar(this);
    filter = new FilterField(QStringLiteral("Filter"), bar);
    filter->setAccessibleName(QStringLiteral("Filter Applications"));
    auto* sortLabel = new TextLabel(TypeRole::secondary, Tone::text2, bar);
    sortLabel->setText(QStringLiteral("Sort"));
    sortLabel->setElideMode(Qt::ElideNone);
    sortMenu = new QComboBox(bar);
    sortMenu->setAccessibleName(QStringLiteral("Sort"));
    for (const auto& [sort, raw] : rawTexts(EnumTag<ApplicationSort>{}))
        sortMenu->addItem(title(sort));
    const QString words = systemSwitchText(context.words);
    system = new Switch(words, bar);
    system->setCheckable(true);
    system->setChecked(true);
    auto* systemLabel = new TextLabel(TypeRole::body, Tone::text, bar);
    systemLabel->setText(words);
    systemLabel->setElideMode(Qt::ElideNone);
    counts = new TextLabel(TypeRole::secondary, Tone::text2, bar);
    counts->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);

    bar->first->addWidget(filter);
    bar->first->addWidget(sortLabel);
    bar->first->addWidget(sortMenu);
    bar->first->addStretch();
    bar->second->addWidget(system);
    bar->second->addSpacing(-Type::px(4)); // nearer to its switch
    bar->second->addWidget(systemLabel);
    bar->second->addWidget(counts, 1);

    connect(filter, &QLineEdit::textChanged, this, &ApplicationsPage::narrowDown);
    connect(system, &QAbstractButton::toggled, this, &ApplicationsPage::narrowDown);
    connect(sortMenu, &QComboBox::activated, this, [this](int index) {
        sortBy(rawTexts(EnumTag<ApplicationSort>{}).at(static_cast<std::size_t>(index)).first);
    });
    return bar;
}

void ApplicationsPage::makeTable() {
    rows = new Rows(
        applicationColumns(context.words), [](const ApplicationRow& row) { return row.app->key; }, this);
    table = new TableView("applications", QStringLiteral("Applications"), &model().settings().defaults(), this);
    table->setRows(rows);
    table->setNarrowHides({std::string(rawValue(ApplicationSort::network))});
    connect(rows, &QAbstractItemModel::headerDataChanged, this, &ApplicationsPage::followSort);
    connect(table, &TableView::orderHeldChanged, this, &ApplicationsPage::showCounts);
    connect(table, &TableView::menuWanted, this, &ApplicationsPage::showMenu);
    connect(table, &TableView::rowActivated, this, &ApplicationsPage::openRow);
    connect(table, &QAbstractItemView::clicked, this, [this](const QModelIndex& cell) { openRow(cell.row()); });
    connect(table, &TableView::selectionMoved, this, [this](int row) {
        if (!isNarrow()) // where the detail takes the table's place, the arrows only move
            openRow(row);
    });
}

QWidget* ApplicationsPage::makeBody() {
    auto* body = new QWidget(this);
    empty = new EmptyState;
    connect(empty, &EmptyState::actionTriggered, this, &ApplicationsPage::clearFilter);
    places = new QStackedWidget;
    places->addWidget(table);
    places->addWidget(empty);
    auto* card = new Card;
    card->setFlush(true);
    card->body()->addWidget(places);
    foot = new InfoNote;
    listing = new QWidget(body);
    auto* listLayout = new QVBoxLayout(listing);
    listLayout->setContentsMargins(0, 0, 0, 0);
    listLayout->setSpacing(Type::px(8));
    listLayout->addWidget(card, 1);
    listLayout->addWidget(foot);

    detailPlace = new QWidget(body);
    backToList = new LinkButton(QStringLiteral("Back to Applications"), detailPlace);
    detail = new AppDetail(context, detailPlace);
    auto* detailLayout = new QVBoxLayout(detailPlace);
    detailLayout->setContentsMargins(0, 0, 0, 0);
    detailLayout->setSpacing(Type::px(8));
    detailLayout->addWidget(backToList, 0, Qt::AlignLeading);
    detailLayout->addWidget(detail, 1);
    connect(backToList, &QAbstractButton::clicked, this, [this] { closeDetail(); });
    connect(detail, &AppDetail::closeWanted, this, [this] { closeDetail(); });
    connect(detail, &AppDetail::processWanted, this, [this](std::int32_t pid) { openProcess(model(), pid); });

    auto* row = new QHBoxLayout(body);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Type::px(12));
    row->addWidget(listing, 1);
    row->addWidget(detailPlace);
    return body;
}

QWidget* ApplicationsPage::mainWidget() const {
    return listing->isHidden() ? static_cast<QWidget*>(backToList) : table;
}

QWidget* ApplicationsPage::filterField() {
    return filter;
}

bool ApplicationsPage::closeDetail() {
    if (!model().selectedAppKey())
        return false;
    model().selectApp(std::nullopt);
    focusMain();
    return true;
}

void ApplicationsPage::wake() {
    detail->setAwake(true);
}

void ApplicationsPage::sleep() {
    detail->setAwake(false);
}

void ApplicationsPage::narrowChanged() {
    arrange();
}

void ApplicationsPage::refresh(const ModelChanges& changes) {
    if (changes.snapshot) {
        list(false);
        detail->refresh();
    }
    if (changes.navigation || changes.snapshot)
        showSelection();
}

/// @param settles  puts the order right although it may be held
void ApplicationsPage::list(bool settles) {
    const SharedSnapshot& snapshot = state().snapshot;
    const bool isReady = state().hasFirstSample;
    std::vector<ApplicationRow> listed;
    if (isReady)
        listed = applicationRows(*snapshot, filter->text(), system->isChecked());
    const bool hasAny = !snapshot->applications.empty();
    listedCounts = isReady && hasAny ? applicationCounts(listed) : QString();
    rows->assign(std::move(listed), snapshot);
    if (settles)
        rows->setFilter({});
    const EmptyText words = emptyText(QStringLiteral("Applications"), isReady, hasAny, context.words);
    empty->set(words.title, {}, words.action);
    places->setCurrentWidget(rows->rowCount() == 0 ? static_cast<QWidget*>(empty) : table);
    foot->setText(isReady ? missingTrafficText(*snapshot, model().settings()->perProcessNetwork, context.words)
                          : QString());
    table->setNarrow(!snapshot->perProcessNetworkAvailable || shownKey.has_value());
    showCounts();
}

void ApplicationsPage::narrowDown() {
    list(true);
    showSelection();
}

void ApplicationsPage::showCounts() {
    counts->setText(rows->isOrderHeld() ? QStringLiteral("Order held while the pointer is over the list")
                                        : listedCounts);
}

/// What is in detail, and which row stands out, as the model says. An application that has just been chosen elsewhere
/// is brought into view.
void ApplicationsPage::showSelection() {
    const std::optional<std::string>& wanted = model().selectedAppKey();
    const bool isNew = wanted != shownKey;
    if (isNew) {
        shownKey = wanted;
        detail->setApp(shownKey);
        if (shownKey)
            makeVisible(*shownKey);
        arrange();
    }
    const std::optional<int> row = shownKey ? rows->indexOf(*shownKey) : std::nullopt;
    if (row.value_or(-1) == table->selectedRow())
        return;
    if (row)
        table->selectRow(*row);
    else if (isNew && !isNarrow()) // where the table was covered, the place in it is kept
        table->clearSelection();
}

void ApplicationsPage::makeVisible(const std::string& key) {
    const ApplicationSnapshot* app = state().app(key);
    if (app && !rows->indexOf(key)) // the toolbar leaves it out
        clearFilter();
}

void ApplicationsPage::arrange() {
    const bool isOpen = shownKey.has_value();
    const bool isAlone = isOpen && isNarrow();
    listing->setVisible(!isAlone);
    toolbar->setVisible(!isAlone);
    detailPlace->setVisible(isOpen);
    backToList->setVisible(isAlone);
    detail->setAlone(isAlone);
    if (isAlone) {
        detailPlace->setMinimumWidth(0);
        detailPlace->setMaximumWidth(QWIDGETSIZE_MAX);
    } else {
        detailPlace->setFixedWidth(Type::px(detailWidth));
    }
    filter->setFixedWidth(Type::px(isNarrow() ? narrowFilterWidth : filterWidth));
    table->setNarrow(!state().snapshot->perProcessNetworkAvailable || isOpen);
}

void ApplicationsPage::clearFilter() {
    filter->clear();
    system->setChecked(true);
}

void ApplicationsPage::openRow(int row) {
    if (const auto key = rows->id(row))
        model().selectApp(*key);
}

void ApplicationsPage::showMenu(int row, const QPoint& place) {
    const ApplicationRow* chosen = rows->row(row);
    if (!chosen || rows->isGone(row))
        return;
    // The row may move or go while the menu is open.
    const std::string key = chosen->app->key;
    const QString name = text(chosen->app->name);
    const auto main = chosen->app->mainPID;
    const auto path = revealPath(*chosen->app, state().snapshot->processes);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Show Details"), this, [this, key] { model().selectApp(key); });
    if (main)
        menu->addAction(QStringLiteral("Show Processes"), this, [this, main] { openProcess(model(), *main); });
    if (path && context.reveal)
        menu->addAction(QStringLiteral("Reveal"), this, [this, path] { context.reveal(*path); });
    menu->addAction(QStringLiteral("Copy Name"), this, [name] { QGuiApplication::clipboard()->setText(name); });
    menu->popup(place);
}

void ApplicationsPage::sortBy(ApplicationSort sort) {
    rows->sort(columnOf(sort), sort == ApplicationSort::name ? Qt::AscendingOrder : Qt::DescendingOrder);
}

/// The menu says what the table is sorted by, whoever sorted it.
void ApplicationsPage::followSort() {
    int index = 0;
    for (const auto& [sort, raw] : rawTexts(EnumTag<ApplicationSort>{})) {
        if (columnOf(sort) == rows->sortColumn())
            sortMenu->setCurrentIndex(index);
        ++index;
    }
}

} // namespace ostrivane
