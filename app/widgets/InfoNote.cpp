#include "app/widgets/InfoNote.hpp"

#include "app/widgets/Icons.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QHBoxLayout>
#include <QPainter>

namespace ostrivane {

namespace {

/// The sign of a note, of an ink of its own: it says no condition.
class NoteSign final : public QWidget {
public:
    explicit NoteSign(QWidget* parent) : QWidget(parent) {
        setFixedSize(Type::px(12), Type::lineHeight(TypeRole::secondary));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QPixmap sign = Icons::pixmap("info", Type::px(12), Theme::current().text2, devicePixelRatioF());
        painter.drawPixmap(0, (height() - Type::px(12)) / 2, sign);
    }
};

} // namespace

InfoNote::InfoNote(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Type::px(8));
    row->addWidget(new NoteSign(this), 0, Qt::AlignTop);
    label = new TextLabel(TypeRole::secondary, Tone::text2, this);
    label->setWraps(true);
    label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    row->addWidget(label, 1);
    hide();
}

void InfoNote::setText(const QString& text) {
    label->setText(text);
    setVisible(!text.isEmpty());
}

} // namespace ostrivane
