#include "app/widgets/TwoLineList.hpp"

#include "app/widgets/Numbers.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QAbstractListModel>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrivane {

namespace {

constexpr double rowHeight = 51;
constexpr double sidePadding = 14;
constexpr double between = 8;

constexpr int sideRole = Qt::UserRole;
constexpr int detailRole = Qt::UserRole + 1;

class TwoLineDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {Type::px(120), Type::px(rowHeight)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const Theme& theme = Theme::current();
        painter->save();
        if (option.state & QStyle::State_Selected)
            painter->fillRect(option.rect, theme.selection);
        else if (option.state & QStyle::State_MouseOver)
            painter->fillRect(option.rect, theme.hover);
        painter->fillRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1, theme.separator);

        const QRect inner = option.rect.adjusted(Type::px(sidePadding), 0, -Type::px(sidePadding), 0);
        const int titleHeight = Type::lineHeight(TypeRole::body);
        const int detailHeight = Type::lineHeight(TypeRole::secondary);
        const int top = inner.top() + (inner.height() - titleHeight - detailHeight) / 2;
        const auto visual = [&](const QRect& logical) { return QStyle::visualRect(option.direction, inner, logical); };
        const auto leading = QStyle::visualAlignment(option.direction, Qt::AlignLeft) | Qt::AlignVCenter;
        const auto trailing = QStyle::visualAlignment(option.direction, Qt::AlignRight) | Qt::AlignVCenter;

        const QString side = index.data(sideRole).toString();
        const QFont sideFont = Type::font(TypeRole::secondary);
        const int sideWidth = static_cast<int>(std::ceil(Numbers::width(sideFont, side)));
        painter->setPen(theme.text2);
        Numbers::draw(*painter, visual({inner.right() + 1 - sideWidth, top, sideWidth, titleHeight}), sideFont,
                      trailing, side);
        const auto write = [&](const QString& words, const QFont& font, const QColor& ink, const QRect& line) {
            painter->setFont(font);
            painter->setPen(ink);
            painter->drawText(visual(line), static_cast<int>(leading),
                              QFontMetricsF(font).elidedText(words, Qt::ElideRight, line.width()));
        };
        QFont titleFont = Type::font(TypeRole::body);
        titleFont.setWeight(QFont::Medium);
        write(index.data(Qt::DisplayRole).toString(), titleFont, theme.text,
              {inner.left(), top, inner.width() - sideWidth - Type::px(between), titleHeight});
        write(index.data(detailRole).toString(), Type::font(TypeRole::secondary), theme.text2,
              {inner.left(), top + titleHeight, inner.width(), detailHeight});
        if (option.state & QStyle::State_HasFocus && option.state & QStyle::State_KeyboardFocusChange) {
            painter->setPen(QPen(theme.accent, 2));
            painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
        }
        painter->restore();
    }
};

} // namespace

class TwoLineList::Rows final : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(list.size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        const TwoLineRow* row = at(index);
        if (row == nullptr)
            return {};
        switch (role) {
        case Qt::DisplayRole:
            return row->title;
        case sideRole:
            return row->side;
        case detailRole:
            return row->detail;
        case Qt::ToolTipRole:
        case Qt::AccessibleTextRole:
            return QStringLiteral("%1, %2, %3").arg(row->title, row->detail, row->side);
        default:
            return {};
        }
    }

    const TwoLineRow* at(const QModelIndex& index) const {
        return index.isValid() && index.row() < static_cast<int>(list.size())
                   ? &list[static_cast<std::size_t>(index.row())]
                   : nullptr;
    }

    QModelIndex indexOf(std::optional<std::int64_t> id) const {
        const auto found = std::ranges::find_if(list, [&](const TwoLineRow& row) { return row.id == id; });
        return found == list.end() ? QModelIndex() : index(static_cast<int>(found - list.begin()));
    }

    bool set(std::vector<TwoLineRow> shown) {
        if (shown == list)
            return false;
        beginResetModel();
        list = std::move(shown);
        endResetModel();
        return true;
    }

private:
    std::vector<TwoLineRow> list;
};

TwoLineList::TwoLineList(const QString& name, QWidget* parent) : QListView(parent), rows(new Rows(this)) {
    setAccessibleName(name);
    setModel(rows);
    setItemDelegate(new TwoLineDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setMouseTracking(true);
    viewport()->setAutoFillBackground(false); // the card's ground shows
}

TwoLineList::~TwoLineList() = default;

void TwoLineList::set(std::vector<TwoLineRow> shown) {
    isSetting = true;
    if (rows->set(std::move(shown)))
        choose(chosen);
    isSetting = false;
}

void TwoLineList::choose(std::optional<std::int64_t> id) {
    const bool wasSetting = std::exchange(isSetting, true);
    chosen = id;
    setCurrentIndex(rows->indexOf(id));
    isSetting = wasSetting;
}

void TwoLineList::keyPressEvent(QKeyEvent* event) {
    const TwoLineRow* row = rows->at(currentIndex());
    if (row && (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)) {
        Q_EMIT deleteWanted(row->id);
        return;
    }
    QListView::keyPressEvent(event);
}

void TwoLineList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    const TwoLineRow* row = rows->at(current);
    if (isSetting || row == nullptr || row->id == chosen)
        return;
    chosen = row->id;
    Q_EMIT rowChosen(row->id);
}

} // namespace ostrivane
