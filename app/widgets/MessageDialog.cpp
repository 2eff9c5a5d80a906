#include "app/widgets/MessageDialog.hpp"

#include "app/widgets/StatusGlyph.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double wide = 420;
constexpr std::size_t mostItems = 5;
constexpr int declined = 2; ///< beside the toolkit's Accepted, and Rejected, which it says of a closed dialog too

} // namespace

MessageDialog::MessageDialog(const MessageText& text, QWidget* parent) : QDialog(parent) {
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setWindowModality(Qt::ApplicationModal);
    setBackgroundRole(QPalette::Base);
    setAccessibleName(text.heading);
    setAccessibleDescription(text.text);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(Type::px(20), Type::px(20), Type::px(20), Type::px(16));
    outer->setSpacing(Type::px(16));
    auto* row = new QHBoxLayout;
    row->setSpacing(Type::px(14));
    auto* glyph = new StatusGlyph(text.condition, 32, this);
    row->addWidget(glyph, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout;
    column->setSpacing(Type::px(6));
    const auto add = [&](const QString& line, TypeRole role, Tone tone) {
        auto* label = new TextLabel(role, tone, this);
        label->setText(line);
        label->setWraps(true);
        label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
        column->addWidget(label);
    };
    add(text.heading, TypeRole::dialogTitle, Tone::text);
    if (!text.text.isEmpty())
        add(text.text, TypeRole::body, Tone::text2);
    const std::size_t listed = std::min(text.items.size(), mostItems);
    for (std::size_t index = 0; index < listed; ++index) {
        auto* item = new TextLabel(TypeRole::table, Tone::text, this);
        item->setElideMode(Qt::ElideMiddle);
        item->setText(text.items[index]);
        column->addWidget(item);
    }
    if (text.items.size() > listed)
        add(QStringLiteral("and %1 more").arg(text.items.size() - listed), TypeRole::table, Tone::text2);
    row->addLayout(column, 1);
    outer->addLayout(row);

    auto* buttons = new QDialogButtonBox(this); // knows the platform's order
    auto* confirm = new PushButton(text.confirm, text.kind, buttons);
    buttons->addButton(confirm, QDialogButtonBox::AcceptRole);
    QPushButton* first = confirm;
    if (!text.cancel.isEmpty()) {
        auto* cancel = new PushButton(text.cancel, ButtonKind::plain, buttons);
        buttons->addButton(cancel, QDialogButtonBox::RejectRole);
        if (text.kind == ButtonKind::confirming || text.kind == ButtonKind::destructive)
            first = cancel; // what cannot be undone is not one key away
    }
    first->setDefault(true);
    first->setFocus();
    outer->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { done(declined); });
    setFixedSize(Type::px(wide), outer->totalHeightForWidth(Type::px(wide)));
}

std::optional<bool> MessageDialog::choose(const MessageText& text, QWidget* parent) {
    MessageDialog dialog(text, parent);
    const int answer = dialog.exec();
    return answer == QDialog::Rejected ? std::nullopt : std::optional(answer == QDialog::Accepted);
}

} // namespace ostrivane
