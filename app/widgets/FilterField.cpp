#include "app/widgets/FilterField.hpp"

#include "app/widgets/Buttons.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace ostrivane {

namespace {

constexpr double signSize = 16;
constexpr double signStart = 8;
constexpr double textStart = 24;
constexpr double buttonRoom = 26;

} // namespace

FilterField::FilterField(const QString& placeholder, QWidget* parent) : QLineEdit(parent) {
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setTextMargins(Type::px(textStart), 0, 0, 0);
    clearButton = new IconButton("close", QStringLiteral("Clear"), this);
    clearButton->setFocusPolicy(Qt::NoFocus); // Escape does the same
    clearButton->setCursor(Qt::ArrowCursor);
    clearButton->hide();
    connect(clearButton, &QAbstractButton::clicked, this, &QLineEdit::clear);
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        const bool isFilled = !text.isEmpty();
        if (clearButton->isHidden() != isFilled)
            return;
        clearButton->setVisible(isFilled);
        placeParts();
    });
}

void FilterField::setShortcutText(const QString& text) {
    if (text == shortcut)
        return;
    shortcut = text;
    placeParts();
    update();
}

QSize FilterField::sizeHint() const {
    return {Type::px(180), Type::px(28)};
}

void FilterField::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape || event->modifiers() != Qt::NoModifier)
        return QLineEdit::keyPressEvent(event);
    event->setAccepted(!text().isEmpty());
    clear();
}

void FilterField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    placeParts();
}

/// Text begins behind the sign and ends ahead of what stands at the other end.
void FilterField::placeParts() {
    const int room = Type::px(buttonRoom);
    const QRect button(width() - room, (height() - Type::px(24)) / 2, Type::px(24), Type::px(24));
    clearButton->setGeometry(QStyle::visualRect(layoutDirection(), rect(), button));
    const int hint = shortcut.isEmpty() ? 0 : Paint::textWidth(Type::font(TypeRole::caption), shortcut) + Type::px(14);
    const int end = text().isEmpty() ? hint : room - Type::px(4);
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const int start = Type::px(textStart);
    setTextMargins(mirrored ? end : start, 0, mirrored ? start : end, 0);
}

void FilterField::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    const Theme& theme = Theme::current();
    const auto visual = [this](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
    const int sign = Type::px(signSize);
    const QRect place = visual({Type::px(signStart), (height() - sign) / 2, sign, sign});
    painter.drawPixmap(place.topLeft(), Icons::pixmap("search", sign, theme.text2, devicePixelRatioF()));
    if (shortcut.isEmpty() || !text().isEmpty())
        return;
    painter.setPen(theme.text3);
    const int wide = Paint::textWidth(Type::font(TypeRole::caption), shortcut);
    Paint::line(painter, visual({width() - wide - Type::px(8), 0, wide, height()}), Type::font(TypeRole::caption),
                shortcut);
}

} // namespace ostrivane
