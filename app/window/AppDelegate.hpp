#pragma once

#include "app/pages/PageContext.hpp"
#include "app/window/Backend.hpp"
#include "app/window/DesktopAppearance.hpp"
#include "app/window/FileManager.hpp"
#include "app/window/LaunchArguments.hpp"
#include "app/window/LoginItem.hpp"
#include "app/window/WindowManager.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ostrivane {

/// What the delegate is given beside its backend.
struct DelegateParts {
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<DesktopAppearance> appearance;
    std::unique_ptr<FileManager> fileManager; ///< null where the files are those of another machine
    std::function<WayBack()> wayBack;         ///< to the program, once its window is closed
    std::string recording;                    ///< the file of what is shown; empty for this machine
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
    /// The recording that is shown has no further tick.
    void recordingDidEnd();
    void applicationWillTerminate();
    /// Ends a session that runs and writes the history; waits two seconds for it at the most.
    void saveWork();

    WindowManager& windows() { return *manager; }
    PageContext& pages() { return context; }

private:
    void showWindow();
    /// Has the window, where there is one, say what there is to say across its pages.
    void showNotices();
    void reveal(const std::string& path);
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
    bool hasRecordingEnded = false;
};

} // namespace ostrivane
