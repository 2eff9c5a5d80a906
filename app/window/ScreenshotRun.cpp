#include "app/window/ScreenshotRun.hpp"

#include "app/model/AppModel.hpp"
#include "app/pages/PageContext.hpp"
#include "app/widgets/AppIcons.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Theme.hpp"
#include "app/window/Backend.hpp"
#include "app/window/LoginItem.hpp"
#include "app/window/MainMenu.hpp"
#include "app/window/MainThread.hpp"
#include "app/window/MainWindow.hpp"
#include "app/window/Sidebar.hpp"
#include "core/model/RawValue.hpp"
#include "core/model/Text.hpp"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <limits>
#include <memory>
#include <string_view>

namespace ostrivane {

namespace {

using namespace std::chrono_literals;

constexpr auto settling = 60ms; // for what a page does a moment after it was shown

int fail(const std::string& problem) {
    std::fputs((Text::visible(problem) + "\n").c_str(), stderr);
    return 1;
}

/// Lets the history answer all that it was asked, and the pages take it in.
void settle(AppModel& model, const std::function<void(std::function<void()>)>& onMainThread) {
    for (int round = 0; round < 2; ++round) { // an answer may lead to a further question
        QEventLoop loop;
        QTimer pause;
        pause.setSingleShot(true);
        pause.setInterval(settling);
        QObject::connect(&pause, &QTimer::timeout, &loop, &QEventLoop::quit);
        model.history().isAvailable([&](bool) { onMainThread([&] { pause.start(); }); });
        loop.exec();
    }
}

} // namespace

int runScreenshots(const LaunchArguments& arguments) {
    const QDir folder(text(arguments.screenshots));
    if (!folder.mkpath(QStringLiteral(".")))
        return fail("The folder " + arguments.screenshots + " cannot be made.");
    const QTemporaryDir history;
    if (!history.isValid())
        return fail("No folder can be made for the history: " + history.errorString().toStdString());

    const MainThread mainThread;
    QEventLoop playing;
    Backend backend(mainThread.poster(),
                    {.source = {.replay = arguments.replay, .speed = std::numeric_limits<double>::infinity()},
                     .historyFolder = history.path().toStdString(),
                     .ended = [&playing] { playing.quit(); }});
    if (const auto problem = backend.problem())
        return fail(*problem);
    AppModel& model = backend.model();
    for (const std::string_view page : readingPages) // from the first tick on
        model.registerPage(std::string(page));
    model.setWindowVisible(true);
    model.start();
    playing.exec();
    if (const auto problem = backend.problem())
        return fail(*problem);
    settle(model, mainThread.poster());
    model.refreshTotals();
    settle(model, mainThread.poster());

    const auto loginItem = nativeLoginItem();
    PageContext context{.model = model,
                        .words = backend.words(),
                        .loginItem = *loginItem,
                        .onMainThread = mainThread.poster(),
                        .now = backend.clock(),
                        .wayBack = [] { return WayBack::furtherStart; }};
    for (const Theme* theme : {&Theme::light(), &Theme::dark()}) {
        Icons::clear();
        AppIcons::clear();
        Theme::use(*theme);
        MainWindow window(context, {}, [] { return true; });
        window.menuBar()->hide();
        window.setAttribute(Qt::WA_DontShowOnScreen);
        window.setFixedSize(arguments.width, arguments.height);
        window.show();
        window.setSeen(true);
        for (const auto& [page, name] : rawTexts(EnumTag<Page>())) {
            model.select(page);
            settle(model, mainThread.poster());
            const QString file =
                QStringLiteral("%1%2.png").arg(text(name), theme->isDark ? QStringLiteral("-dark") : QString());
            if (!window.grab().save(folder.filePath(file)))
                return fail("The picture " + folder.filePath(file).toStdString() + " cannot be written.");
        }
    }
    return 0;
}

} // namespace ostrivane
