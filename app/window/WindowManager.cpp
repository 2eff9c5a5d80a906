#include "app/window/WindowManager.hpp"

#include "app/model/AppModel.hpp"
#include "app/widgets/Type.hpp"
#include "app/window/ActivationPolicy.hpp"
#include "app/window/MainWindow.hpp"
#include "app/window/WindowVisibility.hpp"

#include <QByteArray>
#include <QGuiApplication>
#include <QMenuBar>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr const char* frameKey = "OstrivaneMainWindow";
constexpr QSize firstSize{1240, 800};
constexpr QSize leastSize{960, 620};
constexpr QSize frameRoom{16, 64}; // what a window manager puts around a window, at a guess on the safe side

/// What fits on the screen, at the size of the lettering.
QSize fitting(const QSize& wanted) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QSize room = screen ? screen->availableSize() - frameRoom : firstSize;
    return QSize(Type::px(wanted.width()), Type::px(wanted.height())).boundedTo(room).expandedTo(QSize(320, 240));
}

} // namespace

WindowManager::WindowManager(PageContext& given, MenuActions offered, std::function<bool()> asked)
    : context(given), actions(std::move(offered)), mayClose(std::move(asked)) {
    for (const auto which :
         {&MenuActions::minimize, &MenuActions::zoom, &MenuActions::close, &MenuActions::toggleFullScreen})
        actions.*which = [this, act = std::move(actions.*which)] {
            if (isWindowVisible()) // the menu may stand without one
                act();
        };
    menu.reset(buildMainMenu(context.model, context.words, actions, nullptr));
}

WindowManager::~WindowManager() {
    saveFrame();
}

void WindowManager::create() {
    shown = std::make_unique<MainWindow>(context, actions, [this] {
        const bool closes = mayClose();
        if (closes)
            updateActivationPolicy(context.model.settings()->showInDock);
        return closes;
    });
    shown->setMinimumSize(fitting(leastSize));
    shown->resize(fitting(firstSize));
    restoreFrame();
    const auto* visibility = new WindowVisibility(shown.get());
    QObject::connect(visibility, &WindowVisibility::changed, shown.get(), [this](bool canBeSeen) {
        context.model.setWindowVisible(canBeSeen);
        shown->setSeen(canBeSeen);
    });
}

void WindowManager::showMainWindow() {
    if (!shown)
        create();
    updateActivationPolicy(true);
    if (shown->isMinimized())
        shown->setWindowState(shown->windowState() & ~Qt::WindowMinimized);
    shown->show();
    shown->raise();
    shown->activateWindow();
}

void WindowManager::hideMainWindow() {
    if (!shown)
        return;
    saveFrame();
    shown->hide();
    updateActivationPolicy(context.model.settings()->showInDock);
}

bool WindowManager::isWindowVisible() const {
    return shown && shown->isVisible();
}

void WindowManager::saveFrame() const {
    if (shown)
        context.model.settings().defaults().setText(frameKey, shown->saveGeometry().toBase64().toStdString());
}

void WindowManager::restoreFrame() const {
    // The toolkit moves what lies outside of the screens that are there now.
    const auto kept = context.model.settings().defaults().text(frameKey);
    if (!kept || !shown->restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(*kept))))
        if (const QScreen* screen = shown->screen())
            shown->move(screen->availableGeometry().center() - QPoint(shown->width() / 2, shown->height() / 2));
}

} // namespace ostrivane
