#include "app/widgets/Card.hpp"

#include "app/widgets/Paint.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double corner = 8;

class Separator final : public QWidget {
public:
    explicit Separator(QWidget* parent) : QWidget(parent) { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Theme::current().separator); }
};

} // namespace

Card::Card(const QString& title, QWidget* parent) : QWidget(parent) {
    headRow = new QWidget(this);
    headRow->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    titleLabel = new TextLabel(TypeRole::cardTitle, Tone::text, headRow);
    noteLabel = new TextLabel(TypeRole::secondary, Tone::text2, headRow);
    titleLabel->setText(title);
    noteLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    noteLabel->hide();
    head = new QHBoxLayout(headRow);
    head->setSpacing(Type::px(8));
    head->addWidget(titleLabel);
    head->addWidget(noteLabel, 1000); // gives way ahead of title and controls
    head->addStretch(1);
    content = new QVBoxLayout;
    content->setContentsMargins(0, 0, 0, 0);
    outer = new QVBoxLayout(this);
    outer->addWidget(headRow);
    outer->addLayout(content, 1);
    layOut();
}

void Card::setTitle(const QString& title) {
    if (title == titleLabel->text())
        return;
    titleLabel->setText(title);
    layOut();
}

void Card::setNote(const QString& note) {
    noteLabel->setText(note);
    noteLabel->setVisible(!note.isEmpty());
}

void Card::addControl(QWidget* control) {
    head->addWidget(control);
    layOut();
}

void Card::addLead(QWidget* widget) {
    head->insertWidget(leads++, widget);
    layOut();
}

void Card::setFlush(bool flush) {
    isFlush = flush;
    layOut();
}

QWidget* Card::separator(QWidget* parent) {
    return new Separator(parent);
}

QString Card::accessibleLabel() const {
    return titleLabel->text();
}

void Card::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::sheet(painter, rect(), Type::px(corner), Theme::current().card, Theme::current().border);
}

void Card::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange)
        layOut();
    QWidget::changeEvent(event);
}

/// A title's row with taller controls takes their height from the room around it, so that titles of cards beside each
/// other stand on one line.
void Card::layOut() {
    const bool hasHead = !titleLabel->text().isEmpty() || head->count() > 3;
    headRow->setVisible(hasHead);
    const int side = Type::px(14);
    const int row = Type::px(20);
    head->setContentsMargins(isFlush ? side : 0, 0, isFlush ? side : 0, 0);
    const int extra = std::max(0, head->sizeHint().height() - row);
    const int least = Type::px(3);
    titleLabel->setMinimumHeight(row);
    const int above = Type::px(isFlush ? 10 : 12);
    const int below = Type::px(isFlush ? 10 : 8);
    // The round corners at the foot stay free of what reaches from edge to edge.
    outer->setContentsMargins(isFlush ? 1 : side,
                              hasHead ? std::max(least, above - (extra + 1) / 2) : (isFlush ? 1 : above),
                              isFlush ? 1 : side, isFlush ? Type::px(4) : Type::px(12));
    outer->setSpacing(hasHead ? std::max(least, below - extra / 2) : 0);
}

} // namespace ostrivane
