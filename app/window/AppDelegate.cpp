#include "app/window/AppDelegate.hpp"

#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/MessageDialog.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Theme.hpp"
#include "app/window/ActivationPolicy.hpp"
#include "app/window/MainWindow.hpp"
#include "core/model/Text.hpp"

#include <QFileInfo>

#include <chrono>
#include <utility>

namespace ostrivane {

namespace {

constexpr std::chrono::seconds flushPatience{2};

} // namespace

AppDelegate::AppDelegate(Backend& behind, DelegateParts given)
    : backend(behind), parts(std::move(given)), context{.model = backend.model(),
                                                        .words = backend.words(),
                                                        .loginItem = *parts.loginItem,
                                                        .onMainThread = parts.onMainThread,
                                                        .now = backend.clock(),
                                                        .wayBack = parts.wayBack,
                                                        .otherKeeper = [&behind] { return behind.otherKeeper(); }} {
    if (parts.fileManager)
        context.reveal = [this](const std::string& path) { reveal(path); };
    manager = std::make_unique<WindowManager>(context, menuActions(), [this] { return mayCloseWindow(); });
    followingSettings = context.model.settings().observe([this] { applyAppearance(); });
    parts.appearance->onChange([this] { applyAppearance(); });
    applyAppearance();
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching(const LaunchArguments& arguments) {
    AppModel& model = context.model;
    updateActivationPolicy(model.settings()->showInDock);
    model.start();
    backend.onHistoryProblem([this](std::optional<std::string> problem) {
        historyProblem = std::move(problem);
        showNotices();
    });
    const LaunchDecision decision = decideLaunch(arguments);
    if (arguments.page)
        model.select(*arguments.page);
    if (arguments.replay.empty() && !model.settings()->hasOnboarded) { // a recording welcomes nobody
        model.settings().set(&Preferences::hasOnboarded, true);
        model.setShowsWelcome(decision.allowsWelcome);
    }
    if (decision.showsWindow || context.wayBack() == WayBack::none)
        showWindow();
}

void AppDelegate::applicationShouldHandleReopen(std::optional<Page> page) {
    if (page)
        context.model.select(*page);
    showWindow();
}

void AppDelegate::showWindow() {
    manager->showMainWindow();
    showNotices();
}

void AppDelegate::showNotices() {
    MainWindow* window = manager->window();
    if (!window)
        return;
    window->showHistoryProblem(historyProblem);
    if (!parts.recording.empty())
        window->showRecording(QFileInfo(text(parts.recording)).fileName(), hasRecordingEnded);
}

void AppDelegate::recordingDidEnd() {
    hasRecordingEnded = true;
    showNotices();
}

void AppDelegate::applicationWillTerminate() {
    manager->saveFrame();
    saveWork();
}

void AppDelegate::saveWork() {
    context.model.dropObservers(); // there may be no display any more to show it on
    context.model.stopSession();   // what was recorded so far is worth more than a row without an end
    backend.finish(flushPatience);
}

void AppDelegate::reveal(const std::string& path) {
    parts.fileManager->reveal(path, [this, path] {
        MessageDialog::ask({.condition = Condition::info,
                            .heading = QStringLiteral("No file manager answered"),
                            .text = text(Text::visible(path)),
                            .confirm = QStringLiteral("OK")},
                           manager->window());
    });
}

bool AppDelegate::mayCloseWindow() {
    switch (context.wayBack()) {
    case WayBack::icon:
    case WayBack::system:
        return true;
    case WayBack::none:
        parts.quit();
        return true;
    case WayBack::furtherStart:
        break;
    }
    KeyValueStore& kept = context.model.settings().defaults();
    if (!kept.boolean(keepRunningKey)) {
        const auto keeps = MessageDialog::choose(
            {.condition = Condition::info,
             .heading = QStringLiteral("Keep running without a window?"),
             .text =
                 QStringLiteral("There is no icon to bring the window back with. Kept running in the background, "
                                "Ostrivane goes on keeping the history and watching over this %1; starting it again "
                                "shows the window. Quit from the menu, with Ctrl+Q.")
                     .arg(text(context.words.computer)),
             .confirm = QStringLiteral("Keep running in the background"),
             .kind = ButtonKind::plain,
             .cancel = QStringLiteral("Quit")},
            manager->window());
        if (!keeps)
            return false;
        kept.setBoolean(keepRunningKey, *keeps);
    }
    if (!kept.boolean(keepRunningKey).value_or(false))
        parts.quit();
    return true;
}

void AppDelegate::applyAppearance() {
    const AppearanceMode chosen = context.model.settings()->appearance;
    const bool isDark =
        chosen == AppearanceMode::dark || (chosen == AppearanceMode::system && parts.appearance->prefersDark());
    if (isDark == Theme::current().isDark && manager->window())
        return;
    Icons::clear();
    AppIcons::clear();
    Theme::use(isDark ? Theme::dark() : Theme::light());
}

void AppDelegate::showAbout() {
    MessageDialog::ask(
        {.condition = Condition::info,
         .heading = QStringLiteral("Ostrivane " OSTRIVANE_VERSION),
         .text = QStringLiteral("Local-only: no account, no telemetry.\n\nOstrivane is an independent "
                                "application with no affiliation to the platform's vendor. Its icons are "
                                "those of the Breeze theme (LGPL)."),
         .confirm = QStringLiteral("OK")},
        manager->window());
}

void AppDelegate::toggleFullScreen() {
    if (MainWindow* window = manager->window())
        window->setWindowState(window->windowState() ^ Qt::WindowFullScreen);
}

MenuActions AppDelegate::menuActions() {
    AppModel& model = context.model;
    return {
        .showAbout = [this] { showAbout(); },
        .showSettings = [this] { applicationShouldHandleReopen(Page::settings); },
        .quit = parts.quit,
        .focusSearch =
            [this, &model] {
                showWindow();
                model.setSidebarVisible(true);
                manager->window()->focusSearch();
            },
        .toggleSidebar = [&model] { model.setSidebarVisible(!model.isSidebarVisible()); },
        .toggleFullScreen = [this] { toggleFullScreen(); },
        .goToPage = [this](Page page) { applicationShouldHandleReopen(page); },
        .minimize = [this] { manager->window()->showMinimized(); },
        .zoom = [this] { manager->window()->setWindowState(manager->window()->windowState() ^ Qt::WindowMaximized); },
        .close = [this] { manager->window()->close(); },
        .showMainWindow = [this] { showWindow(); }};
}

} // namespace ostrivane
