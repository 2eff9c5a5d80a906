#include "app/pages/ProcessPanelView.hpp"

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Tag.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Theme.hpp"
#include "app/widgets/Type.hpp"

#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace ostrivane {

namespace {

constexpr double iconSize = 22;
constexpr double cornerOfCard = 7;

} // namespace

class ProcessPanelView::Picture final : public QWidget {
public:
    explicit Picture(QWidget* owner) : QWidget(owner) { setFixedSize(Type::px(iconSize), Type::px(iconSize)); }
    void set(const QPixmap& wanted) {
        if (wanted.cacheKey() == drawn.cacheKey())
            return;
        drawn = wanted;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawPixmap(rect(), drawn); }

private:
    QPixmap drawn;
};

ProcessPanelView::ProcessPanelView(QWidget* owner) : QWidget(owner) {
    picture = new Picture(this);
    name = new TextLabel(TypeRole::bodyStrong, Tone::text, this);
    kind = new Tag({}, this);
    facts = new TextLabel(TypeRole::secondary, Tone::text2, this);
    commandLine = new TextLabel(TypeRole::code, Tone::text, this);
    activity = new TextLabel(TypeRole::secondary, Tone::text2, this);
    reveal = new PushButton(QStringLiteral("Reveal"), ButtonKind::plain, this);
    reveal->setIconName("reveal");
    connect(reveal, &QAbstractButton::clicked, this, &ProcessPanelView::revealWanted);

    auto* title = new QHBoxLayout;
    title->setSpacing(Type::px(10));
    title->addWidget(picture);
    title->addWidget(name);
    title->addWidget(kind);
    title->addWidget(facts, 1);
    auto* lines = new QVBoxLayout;
    lines->setSpacing(Type::px(3));
    lines->addLayout(title);
    lines->addWidget(commandLine);
    lines->addWidget(activity);
    actions = new QHBoxLayout;
    actions->setSpacing(Type::px(8));
    actions->addWidget(reveal);
    auto* all = new QHBoxLayout(this);
    all->setContentsMargins(Type::px(14), Type::px(10), Type::px(14), Type::px(10));
    all->setSpacing(Type::px(14));
    all->addLayout(lines, 1);
    all->addLayout(actions);
}

void ProcessPanelView::set(const ProcessPanel& panel, bool revealable) {
    name->setText(panel.name);
    kind->setWord(panel.kind);
    facts->setText(panel.facts);
    commandLine->setText(panel.commandLine);
    activity->setText(panel.activity);
    nameForAccessibility(*reveal, QStringLiteral("Reveal %1").arg(panel.name));
    reveal->setVisible(revealable);
}

void ProcessPanelView::setIcon(const QPixmap& icon) {
    picture->set(icon);
}

void ProcessPanelView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Theme& theme = Theme::current();
    const qreal corner = Type::px(cornerOfCard);
    QPainterPath ground;
    ground.addRoundedRect(QRectF(rect()).adjusted(0, -corner, 0, 0), corner, corner);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(ground, theme.cardAlt);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(0, 0, width(), 1, theme.border);
}

} // namespace ostrivane
