#include "app/model/DesktopEntry.hpp"
#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Style.hpp"
#include "app/widgets/Type.hpp"
#include "app/window/AppDelegate.hpp"
#include "app/window/Backend.hpp"
#include "app/window/LaunchArguments.hpp"
#include "app/window/MainThread.hpp"
#include "app/window/ScreenshotRun.hpp"
#include "app/window/SingleInstance.hpp"
#include "core/sampling/platform/NativeMachine.hpp"
#include "core/sampling/platform/UserFolders.hpp"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace ostrivane;

constexpr int failed = 1;
constexpr int misused = 2;

std::vector<std::string> own(const QStringList& arguments) {
    std::vector<std::string> given;
    for (qsizetype i = 1; i < arguments.size(); ++i)
        given.push_back(arguments[i].toStdString());
    return given;
}

void say(std::FILE* stream, const std::string& words) {
    std::fputs(words.c_str(), stream);
}

/// Pictures need no display, and "--help" does not either.
void doWithoutDisplayFor(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        for (const char* option : {"--screenshot", "--help", "-h", "--version"})
            if (std::strncmp(argv[i], option, std::strlen(option)) == 0)
                qputenv("QT_QPA_PLATFORM", "offscreen");
}

/// Not `quit`: that asks the window first, which may ask the person.
void endLoop() {
    QCoreApplication::exit(0);
}

/// Does a last work where something ends the program by `exit` while this object lives: the toolkit does when the
/// display goes away.
class AtExit {
public:
    explicit AtExit(std::function<void()> work) {
        lastWork() = std::move(work);
        static const bool isRegistered =
            std::atexit([] {
                if (!lastWork())
                    return;
                lastWork()();
                std::_Exit(EXIT_FAILURE); // threads go on that use what would be destroyed now
            }) == 0;
        static_cast<void>(isRegistered);
    }
    ~AtExit() { lastWork() = nullptr; }
    AtExit(const AtExit&) = delete;
    AtExit& operator=(const AtExit&) = delete;

private:
    static std::function<void()>& lastWork() {
        static std::function<void()> kept;
        return kept;
    }
};

/// @param instance  null for a program that no further start finds
WayBack wayBackTo(const SingleInstance* instance) {
    if (!instance || !instance->canBeActivated())
        return WayBack::none;
    return nativePlatform() == Platform::macOS ? WayBack::system : WayBack::furtherStart;
}

int run(LaunchArguments arguments) {
    const MainThread mainThread;
    const bool isReplay = !arguments.replay.empty();
    const auto instance = isReplay ? nullptr : nativeSingleInstance(UserFolders::dataDirectory().value_or("/dev/null"));
    if (instance && !instance->claim()) {
        if (!decideLaunch(arguments).showsWindow || instance->showFirst(arguments.page))
            return 0;
        say(stderr, "Ostrivane is running already, and its window cannot be brought up from here.\n");
        return failed;
    }
    std::optional<QTemporaryDir> replayHistory; // a recording has its own, for as long as it is shown
    if (isReplay)
        replayHistory.emplace();
    std::function<void()> recordingEnded;
    Backend backend(mainThread.poster(), {.source = {.replay = arguments.replay},
                                          .historyFolder = isReplay ? replayHistory->path().toStdString() : "",
                                          .ended = [&recordingEnded] { recordingEnded(); }});
    if (const auto problem = backend.problem()) {
        say(stderr, *problem + "\n");
        return failed;
    }
    AppDelegate delegate(backend, {.loginItem = nativeLoginItem(),
                                   .appearance = nativeDesktopAppearance(),
                                   .fileManager = isReplay ? nullptr : nativeFileManager(),
                                   .wayBack = [&] { return wayBackTo(instance.get()); },
                                   .recording = arguments.replay,
                                   .onMainThread = mainThread.poster(),
                                   .quit = endLoop});
    recordingEnded = [&delegate] { delegate.recordingDidEnd(); };
    backend.onQuitSignal(endLoop);
    delegate.pages().loginItem.onLaunched([&](bool atLogin) {
        arguments.isLogin = arguments.isLogin || atLogin;
        if (instance)
            instance->onActivated([&](std::optional<Page> page) { delegate.applicationShouldHandleReopen(page); });
        delegate.applicationDidFinishLaunching(arguments);
    });
    const AtExit atExit([&] {
        delegate.saveWork();
        replayHistory.reset();
    });
    const int status = QApplication::exec();
    delegate.applicationWillTerminate();
    return status;
}

} // namespace

int main(int argc, char** argv) {
    doWithoutDisplayFor(argc, argv);
    QApplication::setStyle(new Style);
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ostrivane"));
    QApplication::setDesktopFileName(QLatin1String(desktopEntry));
    QApplication::setQuitOnLastWindowClosed(false);

    const LaunchArguments arguments = parseLaunchArguments(own(QApplication::arguments()));
    if (arguments.wantsHelp) {
        say(stdout, launchHelp());
        return 0;
    }
    if (arguments.wantsVersion) {
        say(stdout, "ostrivane " OSTRIVANE_VERSION "\n");
        return 0;
    }
    if (arguments.problem) {
        say(stderr, *arguments.problem + " ostrivane --help tells what is.\n");
        return misused;
    }
    if (arguments.screenshots.empty()) // pictures are of one size wherever they are taken
        Type::setBase(QFontInfo(QFontDatabase::systemFont(QFontDatabase::GeneralFont)).pixelSize());
    QApplication::setFont(Type::font(TypeRole::body));
    installAccessibility();
    if (!arguments.screenshots.empty())
        return runScreenshots(arguments);
    return run(arguments);
}
