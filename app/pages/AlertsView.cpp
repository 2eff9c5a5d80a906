#include "app/pages/AlertsView.hpp"

#include "app/pages/AlertLines.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Numbers.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QContextMenuEvent>
#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>

namespace ostrivane {

namespace {

constexpr double alertHeight = 47;
constexpr double dayHeight = 34;
constexpr double edge = 14;
constexpr double glyphSize = 14;
constexpr double bellSize = 13;

/// Where the parts of an alert's row stand.
struct Places {
    QRect glyph;
    QRect title;
    QRect body;
    QRect bell;
    QRect time;
};

Places places(const QRect& row, const QString& time) {
    Places found;
    const int titleHeight = Type::lineHeight(TypeRole::tableStrong);
    const int bodyHeight = Type::lineHeight(TypeRole::tableHead);
    const int top = row.top() + (row.height() - titleHeight - bodyHeight) / 2;
    const int left = row.left() + Type::px(edge);
    const int right = row.left() + row.width() - Type::px(edge);
    const int glyph = Type::px(glyphSize);
    found.glyph = QRect(left, top + titleHeight / 2 - glyph / 3, glyph, glyph);
    const int textLeft = left + glyph + Type::px(11);
    const int timeWidth = static_cast<int>(Numbers::width(Type::font(TypeRole::table), time)) + 1;
    found.time = QRect(right - timeWidth, top, timeWidth, titleHeight);
    const int bell = Type::px(bellSize);
    found.bell = QRect(found.time.left() - Type::px(15) - bell, top + (titleHeight - bell) / 2, bell, bell);
    const int textWidth = qMax(0, found.bell.left() - Type::px(8) - textLeft);
    found.title = QRect(textLeft, top, textWidth, titleHeight);
    found.body = QRect(textLeft, top + titleHeight, textWidth, bodyHeight);
    return found;
}

class AlertDelegate final : public QStyledItemDelegate {
public:
    AlertDelegate(const AlertLines* shown, QObject* parent) : QStyledItemDelegate(parent), lines(shown) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
        const AlertLine* line = lines->line(index);
        return {0, Type::px(line && !line->id ? dayHeight : alertHeight)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const AlertLine* line = lines->line(index);
        if (!line)
            return;
        painter->save();
        if (line->id)
            paintAlert(*painter, option, *line);
        else
            paintDay(*painter, option, *line, index.row() == 0);
        painter->restore();
    }

private:
    static void draw(QPainter& painter, const QStyleOptionViewItem& option, const QRect& rect, TypeRole role, Tone tone,
                     const QString& words) {
        const QFont font = Type::font(role);
        painter.setFont(font);
        painter.setPen(Theme::current().colour(tone));
        painter.drawText(QStyle::visualRect(option.direction, option.rect, rect),
                         static_cast<int>(Qt::AlignVCenter | Qt::TextSingleLine |
                                          QStyle::visualAlignment(option.direction, Qt::AlignLeft)),
                         QFontMetrics(font).elidedText(words, Qt::ElideRight, rect.width()));
    }

    static void paintDay(QPainter& painter, const QStyleOptionViewItem& option, const AlertLine& line, bool isFirst) {
        if (!isFirst)
            painter.fillRect(option.rect.left(), option.rect.top(), option.rect.width(), 1, Theme::current().separator);
        draw(painter, option, option.rect.adjusted(Type::px(edge), Type::px(4), -Type::px(edge), 0),
             TypeRole::captionStrong, Tone::text2, text(line.title));
    }

    static void paintAlert(QPainter& painter, const QStyleOptionViewItem& option, const AlertLine& line) {
        const Theme& theme = Theme::current();
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        if (isSelected)
            painter.fillRect(option.rect, theme.selection);
        else if (option.state.testFlag(QStyle::State_MouseOver))
            painter.fillRect(option.rect, theme.hover);
        const QString time = text(line.time);
        const Places place = places(option.rect, time);
        const auto mirrored = [&](const QRect& rect) {
            return QStyle::visualRect(option.direction, option.rect, rect);
        };
        drawStatusGlyph(painter, mirrored(place.glyph), conditionOf(line.severity));
        draw(painter, option, place.title, TypeRole::tableStrong, Tone::text, text(line.title));
        draw(painter, option, place.body, TypeRole::tableHead, Tone::text2, text(line.body));
        if (line.notified)
            painter.drawPixmap(mirrored(place.bell), Icons::pixmap("bell", place.bell.width(), theme.text2,
                                                                   painter.device()->devicePixelRatioF()));
        painter.setPen(theme.text2);
        Numbers::draw(painter, mirrored(place.time), Type::font(TypeRole::table), Qt::AlignCenter, time);
        if (option.state.testFlag(QStyle::State_HasFocus) && option.widget && Style::showsFocus(*option.widget)) {
            painter.setRenderHint(QPainter::Antialiasing);
            Style::drawFocusRing(painter, QRectF(option.rect).adjusted(4, 4, -4, -4), Type::px(4));
        }
    }

    const AlertLines* lines;
};

} // namespace

AlertsView::AlertsView(AlertLines* shown, QWidget* parent) : QListView(parent), lines(shown) {
    setModel(shown);
    setItemDelegate(new AlertDelegate(shown, this));
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    setAutoFillBackground(false);
    setAccessibleName(QStringLiteral("Alerts"));
    connect(this, &QListView::clicked, this, &AlertsView::opened);
}

void AlertsView::keyPressEvent(QKeyEvent* pressed) {
    const bool opens = pressed->key() == Qt::Key_Return || pressed->key() == Qt::Key_Enter;
    if (opens && currentIndex().isValid())
        Q_EMIT opened(currentIndex());
    else
        QListView::keyPressEvent(pressed);
}

void AlertsView::contextMenuEvent(QContextMenuEvent* asked) {
    const bool byKey = asked->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(asked->pos());
    const AlertLine* line = lines->line(index);
    if (!line || !line->id)
        return;
    Q_EMIT menuWanted(index, byKey ? viewport()->mapToGlobal(visualRect(index).center()) : asked->globalPos());
}

/// A text that does not fit is told whole.
bool AlertsView::viewportEvent(QEvent* happened) {
    if (happened->type() != QEvent::ToolTip)
        return QListView::viewportEvent(happened);
    const auto* help = static_cast<QHelpEvent*>(happened);
    const QModelIndex index = indexAt(help->pos());
    const AlertLine* line = lines->line(index);
    if (!line || !line->id)
        return QListView::viewportEvent(happened);
    const Places place = places(visualRect(index), text(line->time));
    const bool fits =
        QFontMetrics(Type::font(TypeRole::tableStrong)).horizontalAdvance(text(line->title)) <= place.title.width() &&
        QFontMetrics(Type::font(TypeRole::tableHead)).horizontalAdvance(text(line->body)) <= place.body.width();
    if (fits)
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(),
                           QStringLiteral("<p>%1</p><p>%2</p>")
                               .arg(text(line->title).toHtmlEscaped(), text(line->body).toHtmlEscaped()),
                           viewport());
    return true;
}

} // namespace ostrivane
