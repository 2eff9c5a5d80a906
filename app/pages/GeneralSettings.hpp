#pragma once

#include "app/pages/PageContext.hpp"
#include "app/pages/SettingsGroup.hpp"

namespace ostrivane {

class LoginRow;
class SettingsControls;
class Switch;

/// Looks, units, start, notifications, and what the pages for development and files use.
class GeneralSettings final : public SettingsColumns {
public:
    GeneralSettings(PageContext& context, SettingsControls& controls, QWidget* parent);
    /// Asks the system again what it does at login, and whether there is a tray.
    void refresh();

private:
    QWidget* makeLooks(SettingsControls& controls);
    QWidget* makeUnits(SettingsControls& controls);
    QWidget* makeStart(SettingsControls& controls);
    void addClosing(SettingsGroup& group, SettingsControls& controls);
    void showClosing();
    QWidget* makeNotifications(SettingsControls& controls);
    QWidget* makeServers(SettingsControls& controls);
    QWidget* makeOrganizer(SettingsControls& controls);

    PageContext& context;
    LoginRow* login = nullptr;
    SettingRow* closing = nullptr; ///< null where the desktop has a Dock
    Switch* keepRunning = nullptr; ///< the same
};

} // namespace ostrivane
