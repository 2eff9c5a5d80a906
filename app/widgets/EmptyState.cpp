#include "app/widgets/EmptyState.hpp"

#include "app/widgets/Buttons.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace ostrivane {

namespace {

constexpr double discSize = 44;
constexpr double discIcon = 20;

} // namespace

EmptyState::EmptyState(std::string_view iconName, QWidget* parent) : QWidget(parent), icon(iconName) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Type::px(16), Type::px(16), Type::px(16), Type::px(16));
    column->setSpacing(0);
    column->addStretch(1);
    if (!icon.empty()) {
        disc = new QWidget(this); // a place in the layout; what it shows is painted below
        disc->setFixedSize(Type::px(discSize), Type::px(discSize));
        column->addWidget(disc, 0, Qt::AlignHCenter);
        column->addSpacing(Type::px(8));
    }
    title = new TextLabel(TypeRole::tableStrong, Tone::text, this);
    detail = new TextLabel(TypeRole::secondary, Tone::text2, this);
    for (TextLabel* label : {title, detail}) {
        label->setWraps(true);
        label->setAlignment(Qt::AlignCenter);
        label->setMaximumWidth(Type::px(300));
        // Aligned in the column itself it would be as high as one line.
        auto* row = new QHBoxLayout;
        row->addStretch(1);
        row->addWidget(label, 100);
        row->addStretch(1);
        column->addLayout(row);
    }
    action = new PushButton({}, ButtonKind::plain, this);
    column->addSpacing(Type::px(10));
    column->addWidget(action, 0, Qt::AlignHCenter);
    column->addStretch(1);
    detail->hide();
    action->hide();
    connect(action, &QAbstractButton::clicked, this, &EmptyState::actionTriggered);
}

void EmptyState::set(const QString& line, const QString& explanation, const QString& label) {
    title->setText(line);
    detail->setText(explanation);
    detail->setVisible(!explanation.isEmpty());
    if (action->text() != label) {
        action->setText(label);
        action->updateGeometry();
    }
    action->setVisible(!label.isEmpty());
}

void EmptyState::paintEvent(QPaintEvent*) {
    if (!disc)
        return;
    QPainter painter(this);
    const Theme& theme = Theme::current();
    const QRect place = disc->geometry();
    Paint::sheet(painter, place, place.width() / 2.0, theme.unknown.ground);
    const int size = Type::px(discIcon);
    painter.drawPixmap(place.center() - QPoint(size / 2 - 1, size / 2 - 1),
                       Icons::pixmap(icon, size, theme.text2, devicePixelRatioF()));
}

} // namespace ostrivane
