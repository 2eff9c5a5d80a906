#pragma once

#include "app/pages/PageContext.hpp"
#include "app/window/Backend.hpp"
#include "app/window/DesktopAppearance.hpp"
#include "app/window/LaunchArguments.hpp"
#include "app/window/LoginItem.hpp"
#include "app/window/WindowManager.hpp"

#include <functional>
#include <memory>
#include <optional>

namespace ostrivane {

/// What the delegate is given beside its backend.
struct DelegateParts {
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<DesktopAppearance> appearance;
    std::function<bool()> hasTray; ///< whether the program can be reached without its window
    bool isReopened = false; ///< whether the system itself brings a running program's window back: nobody is asked then
    std::function<void(std::function<void()>)> onMainThread;
    std::function<void()> quit; ///< ends the event loop
};

/// The life of the application: its launch, its window, its end.
class AppDelegate {
public:
    AppDelegate(Backend& backend, DelegateParts parts);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    void applicationDidFinishLaunching(const LaunchArguments& arguments);
    /// A further start of the program, or a click on its icon.
    void applicationShouldHandleReopen(std::optional<Page> page);
    void applicationWillTerminate();
    /// Ends a session that runs and writes the history; waits two seconds for it at the most.
    void saveWork();

    WindowManager& windows() { return *manager; }
    PageContext& pages() { return context; }

private:
    bool mayCloseWindow();
    void applyAppearance();
    void showAbout();
    void toggleFullScreen();
    MenuActions menuActions();

    Backend& backend;
    DelegateParts parts;
    PageContext context;
    std::unique_ptr<WindowManager> manager;
    Subscription followingSettings;
    std::optional<std::string> historyProblem;
};

} // namespace ostrivane
