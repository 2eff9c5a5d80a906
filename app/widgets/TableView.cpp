#include "app/widgets/TableView.hpp"

#include "app/widgets/ColumnWidths.hpp"
#include "app/widgets/OrderHold.hpp"
#include "app/widgets/RowsModel.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/TableDelegate.hpp"
#include "app/widgets/TableHead.hpp"
#include "app/widgets/TableMemory.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QApplication>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double plainRow = 28;
constexpr double denseRow = 25;
constexpr double comfortableWords = 200;
constexpr double denseWords = 160;
constexpr double leastWords = 120;

} // namespace

struct TableView::Parts {
    std::string id;
    KeyValueStore* store;
    TableHead* head;
    TableDelegate* delegate;
    OrderHold* hold;
    TableMemory memory;
    std::vector<std::string> narrowHides;
    bool isNarrow = false;
    bool wasDragged = false;     ///< an edge, and the button is still down
    bool appliesColumns = false; ///< sections change by this view, not by the user
    int visibleRows = 0;
    bool isDense = false;
};

TableView::TableView(std::string id, const QString& name, KeyValueStore* store, QWidget* owner)
    : QTableView(owner), parts(new Parts{.id = std::move(id),
                                         .store = store,
                                         .head = new TableHead(this),
                                         .delegate = new TableDelegate(this),
                                         .hold = new OrderHold(this)}) {
    if (store)
        parts->memory = TableMemory::read(*store, parts->id);
    setAccessibleName(name);
    parts->head->setAccessibleName(tr("Columns of %1").arg(name));
    setHorizontalHeader(parts->head);
    setItemDelegate(parts->delegate);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setDense(false);
    setShowGrid(false);
    setFrameShape(QFrame::NoFrame);
    setCornerButtonEnabled(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    parts->head->installEventFilter(this);
    parts->head->viewport()->installEventFilter(this);

    connect(parts->head, &TableHead::sortWanted, this, [this](int column) { sortBy(column); });
    connect(parts->head, &TableHead::menuWanted, this, [this](QPoint global) { showHeadMenu(global); });
    connect(parts->head, &QHeaderView::sectionResized, this,
            [this](int column, int before, int now) { sectionDragged(column, before, now); });
    connect(parts->hold, &OrderHold::changed, this, [this](bool held) {
        if (rows())
            rows()->setOrderHeld(held);
        Q_EMIT orderHeldChanged(held);
    });
    connect(this, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& index) { Q_EMIT rowActivated(index.row()); });
}

TableView::~TableView() = default;

RowsModelBase* TableView::rows() const {
    return static_cast<RowsModelBase*>(model());
}

void TableView::setRows(RowsModelBase* model) {
    setModel(model);
    model->setOrderHeld(isOrderHeld());
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { Q_EMIT selectionMoved(selectedRow()); });
    connect(model, &QAbstractItemModel::layoutChanged, this, [this] {
        parts->delegate->forgetPainted();
        parts->head->viewport()->update();
    });
    connect(model, &QAbstractItemModel::rowsRemoved, this, [this] { parts->delegate->forgetPainted(); });
    applyColumns();
}

void TableView::setDense(bool dense) {
    parts->isDense = dense;
    const int height = Type::px(dense ? denseRow : plainRow);
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
    if (parts->visibleRows > 0)
        setVisibleRows(parts->visibleRows);
}

void TableView::setVisibleRows(int count) {
    parts->visibleRows = count;
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFixedHeight(parts->head->sizeHint().height() + count * verticalHeader()->defaultSectionSize());
}

int TableView::selectedRow() const {
    const QModelIndexList selected = selectionModel() ? selectionModel()->selectedRows() : QModelIndexList();
    return selected.isEmpty() ? -1 : selected.front().row();
}

void TableView::selectRow(int row) {
    if (row == selectedRow())
        return;
    if (row < 0)
        return clearSelection();
    setCurrentIndex(model()->index(row, std::max(0, parts->head->firstVisible())));
    executeDelayedItemsLayout(); // the way to rows that have just come is known after it
    scrollTo(currentIndex());
}

void TableView::setNarrowHides(std::vector<std::string> columnIDs) {
    parts->narrowHides = std::move(columnIDs);
    applyColumns();
}

void TableView::setNarrow(bool narrow) {
    if (narrow == parts->isNarrow)
        return;
    parts->isNarrow = narrow;
    applyColumns();
}

void TableView::holdWhileOpen(QWidget* opened) {
    parts->hold->holdWhileOpen(opened);
}

bool TableView::isOrderHeld() const {
    return parts->hold->isHeld();
}

/// Paints anew what is in view and shows something else than before.
void TableView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>&) {
    const auto [firstInView, lastInView] = rowsInView();
    const int last = std::min(lastInView, bottomRight.row());
    for (int row = std::max(firstInView, topLeft.row()); row <= last; ++row)
        for (int column = topLeft.column(); column <= bottomRight.column(); ++column)
            if (!isColumnHidden(column) && parts->delegate->isOutdated(*rows(), row, column))
                update(model()->index(row, column));
}

/// From the first to the last; what the page around hides does not count. The last is less than the first where there
/// are none.
std::pair<int, int> TableView::rowsInView() const {
    const QRect seen = viewport()->visibleRegion().boundingRect();
    const int first = seen.isEmpty() ? -1 : rowAt(seen.top());
    if (first < 0)
        return {0, -1};
    const int last = rowAt(seen.bottom());
    return {first, last < 0 ? rows()->rowCount() - 1 : last};
}

void TableView::rowsInserted(const QModelIndex& parent, int start, int end) {
    if (start < rows()->rowCount() - (end - start + 1))
        parts->delegate->forgetPainted();
    QTableView::rowsInserted(parent, start, end);
}

/// The selection goes with its row. It does not pass to a neighbour.
void TableView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
    if (const int current = currentIndex().row(); current >= start && current <= end) {
        clearSelection();
        selectionModel()->clearCurrentIndex();
    }
    QTableView::rowsAboutToBeRemoved(parent, start, end);
}

bool TableView::event(QEvent* event) {
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave)
        parts->hold->setPointerInside(event->type() == QEvent::Enter);
    return QTableView::event(event);
}

bool TableView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::MouseMove)
        hover(rowAt(static_cast<QMouseEvent*>(event)->position().toPoint().y()));
    else if (event->type() == QEvent::Leave)
        hover(-1);
    return QTableView::viewportEvent(event);
}

bool TableView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parts->head && event->type() == QEvent::KeyPress)
        parts->hold->keyPressed();
    if (event->type() == QEvent::MouseButtonRelease && std::exchange(parts->wasDragged, false))
        remember();
    return QTableView::eventFilter(watched, event);
}

void TableView::hover(int row) {
    const int before = parts->delegate->hoveredRow();
    if (row == before)
        return;
    parts->delegate->setHoveredRow(row);
    updateRow(before);
    updateRow(row);
}

void TableView::updateRow(int row) {
    if (row >= 0)
        viewport()->update(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
}

void TableView::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    if (parts->delegate->hoveredRow() >= 0)
        hover(rowAt(viewport()->mapFromGlobal(QCursor::pos()).y()));
}

void TableView::paintEvent(QPaintEvent* event) {
    const auto [first, last] = rowsInView();
    parts->delegate->forgetPaintedBeside(first, last);
    QTableView::paintEvent(event);
    if (!currentIndex().isValid() || !Style::showsFocus(*this))
        return;
    QPainter painter(viewport());
    const int row = currentIndex().row();
    const QRectF ring(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
    Style::drawFocusRing(painter, ring.adjusted(3, 3, -3, -4), 4);
}

/// What opens below does not cover the current row.
void TableView::resizeEvent(QResizeEvent* event) {
    const int before = event->oldSize().height();
    const int current = currentIndex().row();
    const bool mayBeCovered = current >= 0 && event->size().height() < before &&
                              rowViewportPosition(current) < before &&
                              rowViewportPosition(current) + rowHeight(current) > 0;
    QTableView::resizeEvent(event);
    applyColumns();
    if (mayBeCovered && QGuiApplication::mouseButtons() == Qt::NoButton) // under a pressed button nothing moves away
        scrollTo(currentIndex());
}

void TableView::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    if (rowAt(event->position().toPoint().y()) == currentIndex().row())
        scrollTo(currentIndex()); // what opened when it was pressed may cover it
}

void TableView::hideEvent(QHideEvent* event) {
    QTableView::hideEvent(event);
    hover(-1);
    parts->hold->release();
}

void TableView::keyPressEvent(QKeyEvent* event) {
    parts->hold->keyPressed();
    const int row = currentIndex().row();
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && row >= 0) {
        Q_EMIT rowActivated(row);
        return;
    }
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Slash) { // the page's
        event->ignore();
        return;
    }
    QTableView::keyPressEvent(event);
}

void TableView::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    selectRow(index.row());
    const QRect row(0, rowViewportPosition(index.row()), viewport()->width(), rowHeight(index.row()));
    Q_EMIT menuWanted(index.row(), byKey ? viewport()->mapToGlobal(row.bottomLeft()) : event->globalPos());
    if (QWidget* opened = QApplication::activePopupWidget())
        holdWhileOpen(opened);
}

void TableView::sortBy(int column) {
    const RowsModelBase::ColumnFacts& facts = rows()->column(column);
    if (!facts.isSortable)
        return;
    const bool isAgain = rows()->sortColumn() == column;
    const bool wasDescending = rows()->sortOrder() == Qt::DescendingOrder;
    const bool descends = isAgain ? !wasDescending : facts.sortsDescendingFirst;
    rows()->sort(column, descends ? Qt::DescendingOrder : Qt::AscendingOrder);
    parts->head->viewport()->update();
}

void TableView::applyColumns() {
    if (!model() || parts->appliesColumns)
        return;
    parts->appliesColumns = true;
    std::vector<ColumnWish> wishes;
    std::vector<int> columns;
    for (int column = 0; column < rows()->columnCount(); ++column) {
        const RowsModelBase::ColumnFacts& facts = rows()->column(column);
        const bool dropsOut =
            parts->isNarrow && std::ranges::find(parts->narrowHides, facts.id) != parts->narrowHides.end();
        const bool hides = dropsOut || (facts.isHideable && parts->memory.hides(facts.id));
        setColumnHidden(column, hides);
        if (hides)
            continue;
        const auto kept = parts->memory.widths.find(facts.id);
        const double width = facts.width > 0 && kept != parts->memory.widths.end() ? kept->second : facts.width;
        wishes.push_back({Type::px(width), facts.isNumeric});
        columns.push_back(column);
    }
    const std::vector<int> widths = columnWidths(
        wishes, viewport()->width(), Type::px(parts->isDense ? denseWords : comfortableWords), Type::px(leastWords));
    for (std::size_t at = 0; at < columns.size(); ++at)
        if (columnWidth(columns[at]) != widths[at])
            setColumnWidth(columns[at], widths[at]);
    parts->delegate->setEdges(parts->head->firstVisible(), parts->head->lastVisible());
    parts->appliesColumns = false;
}

/// What one column wins at its edge, the next one loses; so the edge stays under the pointer.
void TableView::sectionDragged(int column, int before, int now) {
    if (parts->appliesColumns)
        return;
    parts->appliesColumns = true;
    if (const int next = parts->head->visibleAfter(column); next < 0) {
        setColumnWidth(column, before);
    } else {
        const int least = parts->head->minimumSectionSize();
        const int moved = std::min(now - before, columnWidth(next) - least);
        setColumnWidth(column, before + moved);
        setColumnWidth(next, columnWidth(next) - moved);
    }
    parts->appliesColumns = false;
    const double scale = Type::px(1000) / 1000.0;
    for (int at = 0; at < rows()->columnCount(); ++at)
        if (!isColumnHidden(at) && rows()->column(at).width > 0)
            parts->memory.widths[rows()->column(at).id] = columnWidth(at) / scale;
    parts->wasDragged = true;
}

void TableView::remember() {
    if (parts->store)
        parts->memory.write(*parts->store, parts->id);
}

void TableView::showHeadMenu(QPoint global) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int column = 0; column < rows()->columnCount(); ++column) {
        const RowsModelBase::ColumnFacts& facts = rows()->column(column);
        if (!facts.isHideable)
            continue;
        QAction* entry = menu->addAction(facts.title);
        entry->setCheckable(true);
        entry->setChecked(!parts->memory.hides(facts.id));
        connect(entry, &QAction::toggled, this, [this, id = facts.id](bool shows) {
            parts->memory.setHidden(id, !shows);
            remember();
            applyColumns();
        });
    }
    holdWhileOpen(menu);
    menu->popup(global);
}

} // namespace ostrivane
