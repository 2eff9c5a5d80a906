#include "app/pages/MenuItemsList.hpp"

#include "app/pages/SettingsPageText.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Numbers.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr double rowHeight = 36;
constexpr double edge = 14;
constexpr int placeRole = Qt::UserRole; ///< where the item stood when the list was filled
constexpr int iconRole = Qt::UserRole + 1;
constexpr int valueRole = Qt::UserRole + 2;

class ItemDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {0, Type::px(rowHeight)}; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const Theme& theme = Theme::current();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (option.state.testFlag(QStyle::State_Selected))
            painter->fillRect(option.rect, theme.selection);
        else if (option.state.testFlag(QStyle::State_MouseOver))
            painter->fillRect(option.rect, theme.hover);
        if (index.row() > 0)
            painter->fillRect(option.rect.left(), option.rect.top(), option.rect.width(), 1, theme.separator);
        paintHandle(*painter, mirrored(option, handle(option.rect)));
        paintBox(*painter, option, index.data(Qt::CheckStateRole).toInt() == Qt::Checked);
        paintWords(*painter, option, index);
        if (option.state.testFlag(QStyle::State_HasFocus) && option.widget && Style::showsFocus(*option.widget))
            Style::drawFocusRing(*painter, QRectF(option.rect).adjusted(4, 4, -4, -4), Type::px(4));
        painter->restore();
    }

    bool editorEvent(QEvent* happened, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override {
        bool ticks = false;
        if (happened->type() == QEvent::MouseButtonRelease) {
            const auto* mouse = static_cast<QMouseEvent*>(happened);
            const QRect target = mirrored(option, box(option.rect)).adjusted(-4, -4, 4, 4);
            ticks = mouse->button() == Qt::LeftButton && target.contains(mouse->position().toPoint());
        } else if (happened->type() == QEvent::KeyPress) {
            ticks = static_cast<QKeyEvent*>(happened)->key() == Qt::Key_Space;
        }
        if (!ticks)
            return false;
        const bool isTicked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        return model->setData(index, isTicked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }

private:
    static QRect mirrored(const QStyleOptionViewItem& option, const QRect& rect) {
        return QStyle::visualRect(option.direction, option.rect, rect);
    }
    static QRect square(const QRect& row, double left, double size) {
        const int side = Type::px(size);
        return {row.left() + Type::px(left), row.top() + (row.height() - side) / 2, side, side};
    }
    static QRect handle(const QRect& row) { return square(row, edge, 9); }
    static QRect box(const QRect& row) { return square(row, edge + 18, 16); }
    static QRect icon(const QRect& row) { return square(row, edge + 45, 14); }

    static void paintHandle(QPainter& painter, const QRect& rect) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::current().text3);
        const qreal step = rect.height() / 2.0;
        const qreal radius = rect.height() / 9.0;
        for (const int row : {0, 1, 2})
            for (const int column : {0, 1})
                painter.drawEllipse(QPointF(rect.left() + radius + column * step, rect.top() + row * step), radius,
                                    radius);
    }

    static void paintBox(QPainter& painter, const QStyleOptionViewItem& option, bool isTicked) {
        QStyleOptionButton look;
        look.rect = mirrored(option, box(option.rect));
        look.state = QStyle::State_Enabled | (isTicked ? QStyle::State_On : QStyle::State_Off);
        look.palette = option.palette;
        if (option.widget)
            option.widget->style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &look, &painter, option.widget);
    }

    static void paintWords(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
        const Theme& theme = Theme::current();
        const QRect iconRect = icon(option.rect);
        const QString iconName = index.data(iconRole).toString();
        painter.drawPixmap(mirrored(option, iconRect),
                           Icons::pixmap(iconName.toStdString(), iconRect.width(), theme.text2,
                                         painter.device()->devicePixelRatioF()));
        const QFont font = Type::font(TypeRole::table);
        const QString value = index.data(valueRole).toString();
        const int right = option.rect.left() + option.rect.width() - Type::px(edge);
        const int valueWidth = static_cast<int>(Numbers::width(font, value)) + 1;
        const QRect valueRect(right - valueWidth, option.rect.top(), valueWidth, option.rect.height());
        painter.setPen(theme.text2);
        Numbers::draw(painter, mirrored(option, valueRect), font, Qt::AlignCenter, value);
        const QFont bodyFont = Type::font(TypeRole::body);
        const int left = iconRect.right() + Type::px(11);
        const QRect nameRect(left, option.rect.top(), std::max(0, valueRect.left() - Type::px(8) - left),
                             option.rect.height());
        painter.setFont(bodyFont);
        painter.setPen(theme.text);
        painter.drawText(mirrored(option, nameRect),
                         static_cast<int>(Qt::AlignVCenter | QStyle::visualAlignment(option.direction, Qt::AlignLeft)),
                         QFontMetrics(bodyFont).elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideRight,
                                                           nameRect.width()));
    }
};

/// For assistive programs: the value is painted, and no text of the row.
void describe(QListWidgetItem& line) {
    const QString value = line.data(valueRole).toString();
    line.setData(Qt::AccessibleTextRole, value.isEmpty() ? line.text() : line.text() + QStringLiteral(", ") + value);
}

} // namespace

MenuItemsList::MenuItemsList(QWidget* parent) : QListWidget(parent) {
    setItemDelegate(new ItemDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setDragDropMode(InternalMove);
    setDefaultDropAction(Qt::MoveAction);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Figures in the menu bar"));
    viewport()->setAutoFillBackground(false);
    connect(this, &QListWidget::itemChanged, this, [this] {
        if (!filling)
            choose();
    });
    connect(
        model(), &QAbstractItemModel::rowsMoved, this, [this] { choose(); }, Qt::QueuedConnection);
}

QSize MenuItemsList::sizeHint() const {
    return {Type::px(240), Type::px(rowHeight) * count()};
}

void MenuItemsList::setItems(const std::vector<MenuBarItemConfig>& items) {
    if (items == shown && count() == static_cast<int>(items.size()))
        return;
    shown = items;
    fill();
}

void MenuItemsList::fill() {
    filling = true;
    const int current = currentRow();
    while (count() > static_cast<int>(shown.size()))
        delete takeItem(count() - 1);
    while (count() < static_cast<int>(shown.size()))
        addItem(new QListWidgetItem);
    for (int row = 0; row < count(); ++row) {
        const MenuBarItemConfig& config = shown[static_cast<std::size_t>(row)];
        QListWidgetItem& line = *item(row);
        line.setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsDragEnabled);
        line.setText(text(name(config.metric)));
        describe(line);
        line.setCheckState(config.enabled ? Qt::Checked : Qt::Unchecked);
        line.setData(placeRole, row);
        line.setData(iconRole, text(iconName(config.metric)));
    }
    setCurrentRow(current);
    filling = false;
    updateGeometry();
}

void MenuItemsList::setValues(const std::vector<std::string>& values) {
    filling = true;
    for (int row = 0; row < std::min(count(), static_cast<int>(values.size())); ++row) {
        const QString value = text(values[static_cast<std::size_t>(row)]);
        if (item(row)->data(valueRole) == value)
            continue;
        item(row)->setData(valueRole, value);
        describe(*item(row));
    }
    filling = false;
}

void MenuItemsList::choose() {
    std::vector<MenuBarItemConfig> chosen;
    for (int row = 0; row < count(); ++row) {
        const auto place = static_cast<std::size_t>(item(row)->data(placeRole).toInt());
        chosen.push_back(shown[place]);
        chosen.back().enabled = item(row)->checkState() == Qt::Checked;
    }
    if (chosen == shown)
        return;
    shown = chosen;
    fill();
    Q_EMIT itemsChosen(chosen);
}

void MenuItemsList::move(int from, int to) {
    if (from < 0 || to < 0 || to >= count())
        return;
    std::vector<MenuBarItemConfig> chosen = shown;
    std::swap(chosen[static_cast<std::size_t>(from)], chosen[static_cast<std::size_t>(to)]);
    shown = chosen;
    fill();
    setCurrentRow(to);
    Q_EMIT itemsChosen(chosen);
}

void MenuItemsList::keyPressEvent(QKeyEvent* pressed) {
    const bool isUp = pressed->key() == Qt::Key_Up;
    if (pressed->modifiers().testFlag(Qt::AltModifier) && (isUp || pressed->key() == Qt::Key_Down))
        return move(currentRow(), currentRow() + (isUp ? -1 : 1));
    QListWidget::keyPressEvent(pressed);
}

} // namespace ostrivane
