#include "app/pages/AlertRuleRow.hpp"

#include "app/pages/RuleNumberField.hpp"
#include "app/pages/ShownState.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

constexpr double edge = 14;

void paintIcon(QWidget& widget, std::string_view icon, Tone tone) {
    QPainter painter(&widget);
    const int size = Type::px(13);
    QRect place(0, 0, size, size);
    place.moveCenter(widget.rect().center());
    painter.drawPixmap(place, Icons::pixmap(icon, size, Theme::current().colour(tone), widget.devicePixelRatioF()));
}

/// Stands where alerts of the rule are notified of.
class Bell final : public QWidget {
public:
    explicit Bell(QWidget* parent) : QWidget(parent) {
        setFixedSize(Type::px(16), Type::px(16));
        QSizePolicy policy = sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        setSizePolicy(policy);
        setToolTip(tr("Notifies"));
        setAccessibleName(toolTip());
    }

protected:
    void paintEvent(QPaintEvent*) override { paintIcon(*this, "bell", Tone::accent); }
};

/// Opens and closes what is below.
class Expander final : public QAbstractButton {
public:
    Expander(const QString& name, QWidget* parent) : QAbstractButton(parent) {
        setCheckable(true);
        setFixedSize(Type::px(24), Type::px(24));
        setAccessibleName(name);
        setToolTip(name);
        setFocusPolicy(Qt::StrongFocus);
        Style::giveFocusRing(*this, 6);
    }

protected:
    void paintEvent(QPaintEvent*) override { paintIcon(*this, isChecked() ? "up" : "down", Tone::text2); }
};

} // namespace

AlertRuleRow::AlertRuleRow(const AlertRule& rule, QWidget* parent) : QWidget(parent), shown(rule) {
    rows = new QVBoxLayout(this);
    rows->setContentsMargins(Type::px(edge), 0, Type::px(edge), 0);
    rows->setSpacing(0);
    rows->addWidget(makeHead());
    set(rule);
}

QWidget* AlertRuleRow::makeHead() {
    const QString title = text(ostrivane::title(shown.kind));
    auto* head = new QWidget(this);
    head->setMinimumHeight(Type::px(40));
    enabled = new Switch(title, head);
    connect(enabled, &QAbstractButton::toggled, this, [this](bool isOn) { Q_EMIT changeWanted({.enabled = isOn}); });
    name = new TextLabel(TypeRole::tableStrong, Tone::text, head);
    name->setText(title);
    line = new TextLabel(TypeRole::tableHead, Tone::text2, head);
    bell = new Bell(head);
    expander = new Expander(tr("Numbers of “%1”").arg(title), head);
    connect(expander, &QAbstractButton::toggled, this, &AlertRuleRow::open);

    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addWidget(name);
    words->addWidget(line);
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, Type::px(3), 0, Type::px(3));
    row->setSpacing(Type::px(11));
    row->addWidget(enabled);
    row->addLayout(words, 1);
    row->addWidget(bell);
    row->addWidget(expander);
    return head;
}

void AlertRuleRow::set(const AlertRule& rule) {
    shown = rule;
    showChecked(*enabled, rule.enabled);
    name->setTone(rule.enabled ? Tone::text : Tone::text3);
    line->setText(text(ruleLine(rule)));
    bell->setVisible(rule.notify);
    if (details)
        setDetails();
}

void AlertRuleRow::open(bool isOpen) {
    if (isOpen && !details)
        makeDetails();
    if (details)
        details->setVisible(isOpen);
    update();
}

RuleNumberField* AlertRuleRow::addField(QVBoxLayout& column, const QString& caption, const RuleNumber& number,
                                        std::optional<double> AlertRuleChange::*member) {
    const QString of = tr("%1, %2, in %3").arg(text(title(shown.kind)), caption, text(number.unit));
    auto* field = new RuleNumberField(caption, of, number, details);
    connect(field, &RuleNumberField::chosen, this, [this, member](double value) {
        AlertRuleChange change;
        change.*member = value;
        Q_EMIT changeWanted(change);
    });
    column.addWidget(field);
    return field;
}

void AlertRuleRow::makeDetails() {
    details = new QWidget(this);
    auto* column = new QVBoxLayout(details);
    column->setContentsMargins(0, Type::px(6), 0, Type::px(12));
    column->setSpacing(Type::px(7));
    const RuleNumbers numbers = ruleNumbers(shown);
    threshold = addField(*column, tr("Threshold"), numbers.threshold, &AlertRuleChange::threshold);
    lasting = numbers.lasting ? addField(*column, tr("Lasting"), *numbers.lasting, &AlertRuleChange::window) : nullptr;
    cooldown = addField(*column, tr("Not again for"), numbers.cooldown, &AlertRuleChange::cooldown);
    alignFields();

    auto* label = new TextLabel(TypeRole::secondary, Tone::text2, details);
    label->setText(tr("Notify me"));
    label->setFixedWidth(std::max(Type::px(104), label->sizeHint().width() + Type::px(8)));
    notify = new Switch(tr("Notify me of “%1”").arg(text(title(shown.kind))), details);
    notify->setChecked(shown.notify);
    connect(notify, &QAbstractButton::toggled, this, [this](bool isOn) { Q_EMIT changeWanted({.notify = isOn}); });
    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(8));
    row->addWidget(label);
    row->addWidget(notify);
    row->addStretch(1);
    column->addLayout(row);
    rows->addWidget(details);
    details->setVisible(expander->isChecked());
}

void AlertRuleRow::setDetails() {
    const RuleNumbers numbers = ruleNumbers(shown);
    if ((lasting && !lasting->canShow(*numbers.lasting)) || !cooldown->canShow(numbers.cooldown)) {
        details->deleteLater(); // another program chose a time that is no whole minutes
        details->hide();
        return makeDetails();
    }
    threshold->set(numbers.threshold);
    if (lasting)
        lasting->set(*numbers.lasting);
    cooldown->set(numbers.cooldown);
    showChecked(*notify, shown.notify);
    alignFields();
}

/// The fields stand below each other, all as wide as the widest needs.
void AlertRuleRow::alignFields() {
    const std::array fields{threshold, lasting, cooldown};
    int widest = 0;
    for (const RuleNumberField* field : fields)
        widest = std::max(widest, field ? field->leastStepperWidth() : 0);
    for (RuleNumberField* field : fields)
        if (field)
            field->setStepperWidth(widest);
}

void AlertRuleRow::paintEvent(QPaintEvent*) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    if (expander->isChecked())
        painter.fillRect(rect(), theme.cardAlt);
    painter.fillRect(0, 0, width(), 1, theme.separator);
}

} // namespace ostrivane
