#include "app/pages/HealthRow.hpp"

#include "app/widgets/Badge.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/SymbolMark.hpp"
#include "app/widgets/TextLabel.hpp"
#include "app/widgets/Type.hpp"

#include <QHBoxLayout>
#include <QPainter>

namespace ostrivane {

namespace {

constexpr double rowHeight = 29;

} // namespace

HealthRow::HealthRow(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    Style::giveFocusRing(*this, 4);
    symbol = new SymbolMark({}, Tone::text2, this);
    name = new TextLabel(TypeRole::body, Tone::text, this);
    badge = new Badge(this);
    for (QWidget* part : std::initializer_list<QWidget*>{symbol, name, badge})
        part->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Type::px(9));
    row->addWidget(symbol);
    row->addWidget(name, 1);
    row->addWidget(badge);
}

void HealthRow::set(const HealthLine& line) {
    if (line == shown)
        return;
    shown = line;
    symbol->setSymbol(line.symbol);
    name->setText(line.name);
    badge->set(line.condition, line.label);
    setAccessibleName(line.name + QStringLiteral(": ") + line.label);
}

QSize HealthRow::sizeHint() const {
    return {Type::px(200), Type::px(rowHeight)};
}

QSize HealthRow::minimumSizeHint() const {
    return {Type::px(100), Type::px(rowHeight)};
}

void HealthRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (underMouse())
        painter.fillRect(rect(), Theme::current().hover);
    painter.fillRect(0, 0, width(), 1, Theme::current().separator);
}

} // namespace ostrivane
