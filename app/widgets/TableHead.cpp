#include "app/widgets/TableHead.hpp"

#include "app/widgets/Card.hpp"
#include "app/widgets/RowsModel.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/TableDelegate.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <utility>

namespace ostrivane {

namespace {

constexpr double headHeight = 28;
constexpr double signWidth = 8;
constexpr double signGap = 3;
constexpr double cornerOfCard = 7;

void drawSign(QPainter& painter, const QRectF& rect, bool ascending) {
    const qreal half = rect.height() / 2;
    QPainterPath sign;
    sign.moveTo(rect.left(), ascending ? rect.center().y() + half / 2 : rect.center().y() - half / 2);
    sign.lineTo(rect.right(), ascending ? rect.center().y() + half / 2 : rect.center().y() - half / 2);
    sign.lineTo(rect.center().x(), ascending ? rect.center().y() - half / 2 : rect.center().y() + half / 2);
    sign.closeSubpath();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(sign, Theme::current().text);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

/// Whether that widget begins where the card does in which it stands.
bool isAtTopOfCard(const QWidget& widget) {
    const QWidget* card = widget.parentWidget();
    while (card && !qobject_cast<const Card*>(card))
        card = card->parentWidget();
    return card && widget.mapTo(card, QPoint()).y() <= 1;
}

} // namespace

TableHead::TableHead(QWidget* owner) : QHeaderView(Qt::Horizontal, owner) {
    setSectionsClickable(true);
    setHighlightSections(false);
    setSectionResizeMode(QHeaderView::Interactive);
    setMinimumSectionSize(Type::px(32));
    setFocusPolicy(Qt::TabFocus);
    setFrameShape(QFrame::NoFrame);
    connect(this, &QHeaderView::sectionClicked, this, &TableHead::sortWanted);
}

const RowsModelBase* TableHead::rows() const {
    return static_cast<const RowsModelBase*>(model());
}

QSize TableHead::sizeHint() const {
    return {QHeaderView::sizeHint().width(), Type::px(headHeight)};
}

int TableHead::firstVisible() const {
    return visibleAfter(-1);
}

int TableHead::visibleAfter(int logical) const {
    for (int next = logical + 1; next < count(); ++next)
        if (!isSectionHidden(next))
            return next;
    return -1;
}

int TableHead::lastVisible() const {
    int last = -1;
    for (int next = firstVisible(); next >= 0; next = visibleAfter(next))
        last = next;
    return last;
}

QRect TableHead::sectionRect(int logical) const {
    return {sectionViewportPosition(logical), 0, sectionSize(logical), height()};
}

void TableHead::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(viewport());
        const Theme& theme = Theme::current();
        painter.fillRect(viewport()->rect(), theme.card);
        // At the upper edge of a card the head has the card's corners.
        const bool isAtTop = isAtTopOfCard(*this);
        QPainterPath ground;
        const qreal corner = isAtTop ? Type::px(cornerOfCard) : 0;
        ground.addRoundedRect(QRectF(viewport()->rect()).adjusted(0, 0, 0, corner), corner, corner);
        painter.setRenderHint(QPainter::Antialiasing, isAtTop);
        painter.fillPath(ground, theme.cardAlt);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.fillRect(0, height() - 1, width(), 1, theme.border);
    }
    QHeaderView::paintEvent(event);
    if (focused >= 0 && Style::showsFocus(*this)) {
        QPainter painter(viewport());
        Style::drawFocusRing(painter, QRectF(sectionRect(focused)).adjusted(3, 3, -3, -3), 4);
    }
}

void TableHead::paintSection(QPainter* painter, const QRect& rect, int logical) const {
    const RowsModelBase* model = rows();
    if (!model || !rect.isValid())
        return;
    const RowsModelBase::ColumnFacts& facts = model->column(logical);
    const bool isSorted = model->sortColumn() == logical;
    const Theme& theme = Theme::current();
    QFont font = Type::font(TypeRole::tableHead);
    if (isSorted)
        font.setWeight(QFont::DemiBold);
    const QFontMetricsF metrics(font);

    const int sign = isSorted ? Type::px(signWidth + signGap) : 0;
    QRect inner = TableDelegate::inner(rect, logical == firstVisible(), logical == lastVisible(), layoutDirection());
    const QString title = metrics.elidedText(facts.title, Qt::ElideRight, inner.width() - sign);
    const int width = static_cast<int>(std::ceil(metrics.horizontalAdvance(title)));
    // The sign stands behind the title, on whichever side the column is aligned to.
    const Qt::Alignment side = facts.isNumeric ? Qt::AlignTrailing : Qt::AlignLeading;
    const QRect both =
        QStyle::alignedRect(layoutDirection(), side | Qt::AlignVCenter, QSize(width + sign, inner.height()), inner);
    const QRect lettering =
        QStyle::alignedRect(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter, QSize(width, both.height()), both);
    painter->setFont(font);
    painter->setPen(isSorted || focused == logical ? theme.text : theme.text2);
    painter->drawText(lettering, Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip, title);
    if (!isSorted)
        return;
    const QRect place = QStyle::alignedRect(layoutDirection(), Qt::AlignTrailing | Qt::AlignVCenter,
                                            QSize(Type::px(signWidth), Type::px(signWidth)), both);
    drawSign(*painter, place, model->sortOrder() == Qt::AscendingOrder);
}

void TableHead::moveFocus(int step) {
    int wanted = -1;
    for (int next = firstVisible(); next >= 0; next = visibleAfter(next)) {
        if (step > 0 && next > focused) {
            wanted = next;
            break;
        }
        if (step < 0 && next < focused)
            wanted = next;
    }
    if (wanted >= 0)
        focused = wanted;
    viewport()->update();
}

void TableHead::keyPressEvent(QKeyEvent* event) {
    const int along = isRightToLeft() ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Left:
        return moveFocus(-along);
    case Qt::Key_Right:
        return moveFocus(along);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (focused >= 0)
            Q_EMIT sortWanted(focused);
        return;
    default:
        event->ignore(); // not searched by letters
    }
}

void TableHead::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard && focused >= 0;
    Q_EMIT menuWanted(byKey ? viewport()->mapToGlobal(sectionRect(focused).bottomLeft()) : event->globalPos());
}

void TableHead::focusInEvent(QFocusEvent* event) {
    if (focused < 0 || isSectionHidden(focused))
        focused = firstVisible();
    QWidget::focusInEvent(event);
    viewport()->update();
}

void TableHead::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    viewport()->update();
}

} // namespace ostrivane
