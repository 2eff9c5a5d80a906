#include "app/pages/SettingsGroup.hpp"

#include "app/widgets/Card.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace ostrivane {

namespace {

constexpr double edge = 14;
constexpr double lowRow = 38;
constexpr double highRow = 46;

} // namespace

SettingRow::SettingRow(const QString& title, const QString& detail, QWidget* control, QWidget* parent)
    : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Type::px(edge), Type::px(4), Type::px(edge), Type::px(4));
    row->setSpacing(Type::px(12));
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    label = new TextLabel(TypeRole::body, Tone::text, this);
    label->setText(title);
    remark = new TextLabel(TypeRole::tableHead, Tone::text2, this);
    words->addStretch(1);
    words->addWidget(label);
    words->addWidget(remark);
    words->addStretch(1);
    row->addLayout(words, 1);
    if (control) {
        control->setParent(this);
        row->addWidget(control, 0, Qt::AlignVCenter);
    }
    setDetail(detail);
}

void SettingRow::setDetail(const QString& detail) {
    remark->setText(detail);
    remark->setVisible(!detail.isEmpty());
    setMinimumHeight(Type::px(detail.isEmpty() ? lowRow : highRow));
}

void SettingRow::setFlush() {
    layout()->setContentsMargins(0, Type::px(4), 0, Type::px(4));
    label->setWraps(true);
}

SettingsGroup::SettingsGroup(const QString& title, QWidget* parent) : QWidget(parent) {
    auto* label = new TextLabel(TypeRole::cardTitle, Tone::text, this);
    label->setText(title);
    label->setElideMode(Qt::ElideNone);
    hint = new TextLabel(TypeRole::secondary, Tone::text2, this);
    hint->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    auto* head = new QHBoxLayout;
    head->setContentsMargins(Type::px(2), 0, Type::px(2), 0);
    head->addWidget(label);
    head->addWidget(hint, 1);
    card = new Card({}, this);
    card->setFlush(true);
    card->setAccessibleName(title);
    card->body()->setSpacing(0);
    card->body()->setContentsMargins(0, Type::px(3), 0, 0); // its round corners stay free
    foot = new TextLabel(TypeRole::secondary, Tone::text2, this);
    foot->setWraps(true);
    foot->hide();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(5));
    column->addLayout(head);
    column->addWidget(card);
    column->addWidget(foot);
}

SettingRow* SettingsGroup::add(const QString& title, const QString& detail, QWidget* control) {
    auto* row = new SettingRow(title, detail, control, card);
    addRow(row);
    return row;
}

void SettingsGroup::addRow(QWidget* row) {
    if (!isEmpty)
        card->body()->addWidget(Card::separator(card));
    card->body()->addWidget(row);
    isEmpty = false;
}

void SettingsGroup::setHint(const QString& words) {
    hint->setText(words);
}

void SettingsGroup::setFoot(const QString& words) {
    foot->setText(words);
    foot->setVisible(!words.isEmpty());
}

SettingsColumns::SettingsColumns(QWidget* parent) : QWidget(parent) {
    columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(Type::px(20));
    for (QVBoxLayout** column : {&leading, &trailing}) {
        *column = new QVBoxLayout;
        (*column)->setSpacing(Type::px(14));
        (*column)->addStretch(1);
        columns->addLayout(*column, 1);
    }
}

void SettingsColumns::addLeading(QWidget* group) {
    leading->insertWidget(leading->count() - 1, group);
}

void SettingsColumns::addTrailing(QWidget* group) {
    trailing->insertWidget(trailing->count() - 1, group);
}

void SettingsColumns::setNarrow(bool narrow) {
    columns->setDirection(narrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    columns->setSpacing(Type::px(narrow ? 14 : 20));
    columns->setStretch(0, narrow ? 0 : 1);
}

} // namespace ostrivane
