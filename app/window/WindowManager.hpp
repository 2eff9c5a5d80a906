#pragma once

#include "app/pages/PageContext.hpp"
#include "app/window/MainMenu.hpp"

#include <functional>
#include <memory>

class QMenuBar;

namespace ostrivane {

class MainWindow;

/// The one main window: made when it is first shown and kept, also while it is closed.
class WindowManager {
public:
    /// @param mayClose  asked when the user closes the window; false: it stays
    WindowManager(PageContext& context, MenuActions actions, std::function<bool()> mayClose);
    ~WindowManager();
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;

    /// Null until it was first shown.
    MainWindow* window() const { return shown.get(); }

    /// Shows the window in front of others, at the place and size that it had last.
    void showMainWindow();
    void hideMainWindow();
    bool isWindowVisible() const;

    /// Keeps place and size for the next start. Done by itself when the window goes.
    void saveFrame() const;

private:
    void create();
    void restoreFrame() const;

    PageContext& context;
    MenuActions actions;
    std::function<bool()> mayClose;
    std::unique_ptr<QMenuBar> menu; ///< stands without a window; null where each window has its own
    std::unique_ptr<MainWindow> shown;
};

} // namespace ostrivane
