#pragma once

#include "app/pages/PageContext.hpp"
#include "app/pages/SettingsGroup.hpp"

namespace ostrivane {

class MenuItemsList;
class SettingsControls;

/// What the menu bar shows, with the figures as they are now.
class MenuBarSettings final : public SettingsColumns {
public:
    MenuBarSettings(PageContext& context, SettingsControls& controls, QWidget* parent);
    /// Shows the figures of the present snapshot.
    void refresh();

private:
    QWidget* makeLayout(SettingsControls& controls);
    QWidget* makePopover(SettingsControls& controls);
    QWidget* makeItems(SettingsControls& controls);

    PageContext& context;
    MenuItemsList* items = nullptr;
};

} // namespace ostrivane
