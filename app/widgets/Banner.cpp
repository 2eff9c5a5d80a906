#include "app/widgets/Banner.hpp"

#include "app/widgets/Buttons.hpp"
#include "app/widgets/Paint.hpp"
#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <initializer_list>

namespace ostrivane {

QString wordOf(Condition condition) {
    switch (condition) {
    case Condition::good:
        return QStringLiteral("Normal");
    case Condition::elevated:
        return QStringLiteral("Elevated");
    case Condition::high:
        return QStringLiteral("High");
    case Condition::unknown:
        return QStringLiteral("Unavailable");
    case Condition::info:
        return QStringLiteral("Information");
    }
    return {};
}

Banner::Banner(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Type::px(12), Type::px(6), Type::px(10), Type::px(6));
    row->setSpacing(Type::px(10));
    glyph = new StatusGlyph(condition, 14, this);
    row->addWidget(glyph);
    auto* texts = new QVBoxLayout;
    texts->setContentsMargins(0, Type::px(4), 0, Type::px(4));
    texts->setSpacing(0);
    title = new TextLabel(TypeRole::body, Tone::text, this);
    detail = new TextLabel(TypeRole::secondary, Tone::text2, this);
    for (TextLabel* label : {title, detail}) {
        label->setWraps(true);
        texts->addWidget(label);
    }
    row->addLayout(texts, 1);
    action = new PushButton({}, ButtonKind::plain, this);
    action->setSmall(true);
    row->addWidget(action);
    closeButton = new IconButton("close", QStringLiteral("Close"), this);
    row->addWidget(closeButton);
    setMinimumHeight(Type::px(40));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    for (QWidget* part : std::initializer_list<QWidget*>{detail, action, closeButton, this})
        part->hide();
    connect(action, &QAbstractButton::clicked, this, &Banner::actionTriggered);
    connect(closeButton, &QAbstractButton::clicked, this, [this] {
        hide();
        Q_EMIT closed();
    });
}

void Banner::set(Condition shown, const QString& line, const QString& explanation) {
    if (shown == condition && line == title->text() && explanation == detail->text())
        return;
    const bool isNews = line != title->text() || explanation != detail->text();
    const bool wasVisible = isVisible();
    condition = shown;
    glyph->set(shown, wordOf(shown));
    title->setText(line);
    detail->setText(explanation);
    detail->setVisible(!explanation.isEmpty());
    setVisible(!line.isEmpty());
    update();
    if (isNews && wasVisible && isVisible())
        announce();
}

void Banner::setAction(const QString& label) {
    if (action->text() != label) {
        action->setText(label);
        action->updateGeometry();
    }
    action->setVisible(!label.isEmpty());
}

void Banner::setClosable(bool closable) {
    closeButton->setVisible(closable);
}

QString Banner::accessibleLabel() const {
    return detail->text().isEmpty() ? title->text() : title->text() + u' ' + detail->text();
}

void Banner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::sheet(painter, rect(), Type::px(8), Theme::current().colours(condition).ground);
}

void Banner::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    announce();
}

/// Says a text once, however often its page comes and goes.
void Banner::announce() {
    const QString words = accessibleLabel();
    if (words.isEmpty() || words == announced)
        return;
    announced = words;
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace ostrivane
