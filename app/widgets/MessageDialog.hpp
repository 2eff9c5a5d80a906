#pragma once

#include "app/widgets/Buttons.hpp"
#include "app/widgets/Theme.hpp"

#include <QDialog>

#include <optional>
#include <vector>

namespace ostrivane {

/// A question of the program's own: 420 wide, an icon of its condition, a heading, a text, up to five items, and the
/// buttons in the platform's order. Escape is Cancel.
struct MessageText {
    Condition condition = Condition::info;
    QString heading;
    QString text;
    std::vector<QString> items{};
    QString confirm; ///< the button that does it: "Clear"
    ButtonKind kind = ButtonKind::primary;
    QString cancel{}; ///< empty: only `confirm`, as for a message
};

class MessageDialog final : public QDialog {
public:
    MessageDialog(const MessageText& text, QWidget* parent);

    /// Asks, and waits; true for `confirm`.
    static bool ask(const MessageText& text, QWidget* parent) { return choose(text, parent).value_or(false); }
    /// Asks between two things, and waits; false for `cancel`, absent when neither button was pressed: Escape, or the
    /// end of the program.
    static std::optional<bool> choose(const MessageText& text, QWidget* parent);
};

} // namespace ostrivane
