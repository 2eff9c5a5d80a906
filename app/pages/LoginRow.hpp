#pragma once

#include "app/pages/PageContext.hpp"

#include <QWidget>

namespace ostrivane {

class InfoNote;
class SettingRow;
class Switch;

/// Whether the program starts with the user's session. Shows what the system says, also when it did not do as asked.
class LoginRow final : public QWidget {
public:
    explicit LoginRow(PageContext& context, QWidget* parent = nullptr);
    /// Asks the system again.
    void refresh();
    void setFlush(); ///< as `SettingRow::setFlush`
    Switch* control() const { return toggle; }

private:
    PageContext& context;
    Switch* toggle = nullptr;
    SettingRow* row = nullptr;
    InfoNote* note = nullptr;
};

} // namespace ostrivane
