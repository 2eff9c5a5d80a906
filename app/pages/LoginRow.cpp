#include "app/pages/LoginRow.hpp"

#include "app/pages/SettingsGroup.hpp"
#include "app/pages/SettingsPageText.hpp"
#include "app/pages/ShownState.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/InfoNote.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Type.hpp"

#include <QVBoxLayout>

namespace ostrivane {

LoginRow::LoginRow(PageContext& given, QWidget* parent) : QWidget(parent), context(given) {
    const QString title = tr("Start at login");
    toggle = new Switch(title);
    row = new SettingRow(title, {}, toggle, this);
    note = new InfoNote(this);
    note->setContentsMargins(Type::px(14), 0, Type::px(14), Type::px(6));
    note->setText({});
    connect(toggle, &QAbstractButton::toggled, this, [this](bool wanted) {
        const auto failure = context.loginItem.set(wanted);
        note->setText(failure ? text(*failure) : QString());
        refresh();
    });
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(row);
    column->addWidget(note);
    refresh();
}

void LoginRow::setFlush() {
    row->setFlush();
    note->setContentsMargins(0, 0, 0, Type::px(6));
}

void LoginRow::refresh() {
    const LoginItem::State state = context.loginItem.state();
    showChecked(*toggle, state == LoginItem::State::on);
    row->setDetail(text(startAtLoginText(state, context.wayBack())));
}

} // namespace ostrivane
