#include "app/window/Sidebar.hpp"

#include "app/model/AppModel.hpp"
#include "app/widgets/FilterField.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"
#include "app/window/SidebarDelegate.hpp"
#include "app/window/SidebarModel.hpp"
#include "core/model/Calendar.hpp"

#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double wideWidth = 216;
constexpr double narrowWidth = 196;
constexpr double mostShare = 0.3; // of the window, where the lettering is large

QListView* makeList(SidebarModel* pages, const QString& name, QWidget* parent) {
    auto* list = new QListView(parent);
    list->setModel(pages);
    list->setItemDelegate(new SidebarDelegate(list));
    list->setFrameShape(QFrame::NoFrame);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setMouseTracking(true);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // wheel and keys move it
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list->setAccessibleName(name);
    list->viewport()->setAutoFillBackground(false);
    return list;
}

} // namespace

Sidebar::Sidebar(AppModel& shown, const PlatformWords& words, std::function<Date()> clock, QWidget* parent)
    : QWidget(parent), model(shown), now(std::move(clock)) {
    search = new FilterField(QStringLiteral("Search Pages"), this);
    search->setShortcutText(QKeySequence(Qt::CTRL | Qt::Key_F).toString(QKeySequence::NativeText));
    search->installEventFilter(this);
    pages = new SidebarModel(SidebarModel::Part::sections, words, this);
    footPages = new SidebarModel(SidebarModel::Part::settings, words, this);
    list = makeList(pages, QStringLiteral("Pages"), this);
    foot = makeList(footPages, QStringLiteral("Settings"), this);
    foot->setFixedHeight(foot->sizeHintForRow(0));

    line = new QWidget(this);
    line->setFixedHeight(1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Type::px(8), Type::px(10), Type::px(8) + 1, Type::px(8));
    column->setSpacing(Type::px(6));
    nothing = new TextLabel(TypeRole::secondary, Tone::text2, this);
    nothing->setText(QStringLiteral("No matches."));
    nothing->hide();
    column->addWidget(search);
    column->addWidget(nothing);
    column->addWidget(list, 1);
    column->addWidget(line);
    column->addWidget(foot);
    setFixedWidth(Type::px(wideWidth));
    setAccessibleName(QStringLiteral("Sidebar"));

    connect(search, &QLineEdit::textChanged, this, [this](const QString& wanted) {
        pages->setFilter(wanted);
        footPages->setFilter(wanted);
        nothing->setVisible(!pages->firstPage() && !footPages->firstPage());
        showSelection();
    });
    connect(search, &QLineEdit::returnPressed, this, &Sidebar::chooseFirst);
    for (auto [view, rows] : {std::pair{list, pages}, std::pair{foot, footPages}}) {
        view->installEventFilter(this);
        // Not the current row: a list that gets the focus makes its first row the current one.
        connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                [this, rows = rows](const QItemSelection& chosen) {
                    if (chosen.isEmpty())
                        return;
                    if (const auto page = rows->row(chosen.indexes().first().row()).page;
                        page && *page != model.navigation().selectedPage())
                        Q_EMIT pageChosen(*page);
                });
    }
    refresh();
    showSelection();
}

Sidebar::~Sidebar() = default;

void Sidebar::focusSearch() {
    search->setFocus(Qt::ShortcutFocusReason);
    search->selectAll();
}

void Sidebar::focusList() {
    QListView* chosen = footPages->indexOf(model.navigation().selectedPage()) ? foot : list;
    chosen->setFocus(Qt::TabFocusReason);
}

void Sidebar::fitInto(int windowWidth, bool isNarrow) {
    setFixedWidth(std::min(Type::px(isNarrow ? narrowWidth : wideWidth), static_cast<int>(mostShare * windowWidth)));
}

void Sidebar::setSeen(bool isSeen) {
    seen = isSeen;
    settle();
}

void Sidebar::settle() {
    const bool wanted = seen && isVisible();
    if (wanted == awake)
        return;
    awake = wanted;
    if (!awake)
        return watching.disconnect();
    watching = model.observe([this](const ModelChanges& changes) {
        if (changes.navigation)
            showSelection();
        refresh();
    });
    refresh();
    showSelection();
}

void Sidebar::refresh() {
    const Date present = now();
    const Date midnight = Calendar::startOfDay(present);
    pages->update(model.state(), present, midnight);
    footPages->update(model.state(), present, midnight);
}

void Sidebar::showSelection() {
    const Page selected = model.navigation().selectedPage();
    for (auto [view, rows] : {std::pair{list, pages}, std::pair{foot, footPages}}) {
        const auto row = rows->indexOf(selected);
        if (row)
            view->selectionModel()->setCurrentIndex(rows->index(*row), QItemSelectionModel::ClearAndSelect);
        else
            view->selectionModel()->clear();
        if (row)
            view->scrollTo(rows->index(*row));
        view->viewport()->update();
    }
}

void Sidebar::chooseFirst() {
    for (const SidebarModel* rows : {pages, footPages})
        if (const auto first = rows->firstPage()) {
            const auto page = rows->row(*first).page;
            search->clear();
            Q_EMIT pageChosen(*page);
            return;
        }
}

bool Sidebar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (watched != search && (key == Qt::Key_Escape || key == Qt::Key_Slash)) { // the page's, and no letter of a title
        event->ignore();
        return true;
    }
    if (watched == search && key == Qt::Key_Down) {
        for (auto [view, rows] : {std::pair{list, pages}, std::pair{foot, footPages}})
            if (const auto first = rows->firstPage()) {
                view->setFocus(Qt::TabFocusReason);
                view->setCurrentIndex(rows->index(*first));
                break;
            }
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void Sidebar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    painter.fillRect(rect(), theme.sidebar);
    const int edge = layoutDirection() == Qt::LeftToRight ? width() - 1 : 0;
    painter.fillRect(edge, 0, 1, height(), theme.border);
    painter.fillRect(line->geometry(), theme.border);
}

void Sidebar::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    settle();
}

void Sidebar::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    settle();
}

void Sidebar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
}

} // namespace ostrivane
