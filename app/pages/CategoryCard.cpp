#include "app/pages/CategoryCard.hpp"

#include "app/widgets/Badge.hpp"
#include "app/widgets/BulletList.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/SymbolMark.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"

#include <QVBoxLayout>

namespace ostrivane {

CategoryCard::CategoryCard(QWidget* parent) : QWidget(parent) {
    card = new Card({}, this);
    symbol = new SymbolMark({}, Tone::text2, card);
    badge = new Badge(card);
    evidence = new BulletList(card);
    note = new TextLabel(TypeRole::table, Tone::text2, card);
    note->setWraps(true);
    note->hide();
    link = new LinkButton({}, card);
    connect(link, &QAbstractButton::clicked, this, [this] { Q_EMIT opened(shown.page); });
    card->addLead(symbol);
    card->addControl(badge);
    card->body()->setSpacing(Type::px(8));
    card->body()->addWidget(evidence);
    card->body()->addWidget(note);
    card->body()->addStretch(1);
    card->body()->addWidget(link, 0, Qt::AlignLeading);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(card);
}

void CategoryCard::set(const HealthCard& text) {
    if (text == shown)
        return;
    shown = text;
    card->setTitle(text.name);
    symbol->setSymbol(text.symbol);
    badge->set(text.condition, text.label);
    evidence->set(text.evidence);
    evidence->setVisible(!text.evidence.isEmpty());
    note->setText(text.note);
    note->setVisible(!text.note.isEmpty());
    link->setText(text.link);
    link->setVisible(!text.link.isEmpty());
    setAccessibleName(text.name + QStringLiteral(": ") + text.label);
}

} // namespace ostrivane
