#pragma once

#include <QString>

#include <functional>

class QMenuBar;
class QWidget;

namespace ostrivane {

class AppModel;
enum class Page;
struct PlatformWords;

/// What the menus ask for.
struct MenuActions {
    std::function<void()> showAbout;
    std::function<void()> showSettings;
    std::function<void()> quit;
    std::function<void()> focusSearch;
    std::function<void()> toggleSidebar;
    std::function<void()> toggleFullScreen;
    std::function<void(Page)> goToPage;
    std::function<void()> minimize;
    std::function<void()> zoom;
    std::function<void()> close;
    std::function<void()> showMainWindow;
};

/// Builds the menu bar. What an item says, and whether it can be used, is settled when its menu opens and when the
/// model changes.
/// @param parent  the window that it is for; null: the program, whose bar macOS shows with a window and without
/// @return        null where it does not belong: on macOS to a window, elsewhere to the program
QMenuBar* buildMainMenu(AppModel& model, const PlatformWords& words, MenuActions actions, QWidget* parent);

} // namespace ostrivane
