#include "app/window/MainMenu.hpp"

#include "app/model/AppModel.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Strings.hpp"
#include "core/sampling/platform/NativeMachine.hpp"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

#include <memory>
#include <utility>

namespace ostrivane {

namespace {

QAction* add(QMenu* menu, const QString& title, const QKeySequence& keys, std::function<void()> action) {
    auto* item = menu->addAction(title);
    item->setShortcut(keys);
    QObject::connect(item, &QAction::triggered, menu, [action = std::move(action)] { action(); });
    return item;
}

/// What had the focus last, menus aside: they take it while they are open.
class Focused {
public:
    explicit Focused(QObject* parent) {
        QObject::connect(qApp, &QApplication::focusChanged, parent, [kept = kept](QWidget*, QWidget* now) {
            if (now && !qobject_cast<QMenuBar*>(now) && !qobject_cast<QMenu*>(now))
                *kept = now;
        });
    }
    QWidget* widget() const { return *kept; }

private:
    std::shared_ptr<QPointer<QWidget>> kept = std::make_shared<QPointer<QWidget>>();
};

/// An item that works on whatever has the focus, such as a field of text.
void addForFocus(QMenu* menu, const Focused& focus, const QString& title, QKeySequence::StandardKey keys,
                 const char* slot) {
    auto* item = menu->addAction(title);
    item->setShortcut(keys);
    item->setShortcutContext(Qt::WidgetShortcut); // the widget with the focus takes the keys by itself
    QObject::connect(item, &QAction::triggered, menu, [focus, slot] {
        if (QWidget* focused = focus.widget())
            QMetaObject::invokeMethod(focused, slot);
    });
    QObject::connect(menu, &QMenu::aboutToShow, item, [item, focus, slot] {
        const QWidget* focused = focus.widget();
        item->setEnabled(focused && focused->metaObject()->indexOfMethod((QByteArray(slot) + "()").constData()) >= 0);
    });
}

} // namespace

QMenuBar* buildMainMenu(AppModel& model, const PlatformWords& words, MenuActions actions, QWidget* parent) {
    const bool isMac = nativePlatform() == Platform::macOS;
    if (isMac == (parent != nullptr))
        return nullptr;
    auto* bar = new QMenuBar(parent);
    const auto shared = std::make_shared<MenuActions>(std::move(actions));
    const auto call = [shared](std::function<void()> MenuActions::*which) {
        return [shared, which] { ((*shared).*which)(); };
    };

    QMenu* own = bar->addMenu(QStringLiteral("Ostrivane"));
    add(own, QStringLiteral("About Ostrivane"), {}, call(&MenuActions::showAbout))->setMenuRole(QAction::AboutRole);
    own->addSeparator();
    add(own, QStringLiteral("Settings…"), QKeySequence(Qt::CTRL | Qt::Key_Comma), call(&MenuActions::showSettings))
        ->setMenuRole(QAction::PreferencesRole);
    own->addSeparator(); // hiding is added by the system where it exists
    add(own, QStringLiteral("Quit Ostrivane"), QKeySequence(Qt::CTRL | Qt::Key_Q), call(&MenuActions::quit))
        ->setMenuRole(QAction::QuitRole);

    QMenu* edit = bar->addMenu(QStringLiteral("Edit"));
    const Focused focus(bar);
    addForFocus(edit, focus, QStringLiteral("Undo"), QKeySequence::Undo, "undo");
    addForFocus(edit, focus, QStringLiteral("Redo"), QKeySequence::Redo, "redo");
    edit->addSeparator();
    addForFocus(edit, focus, QStringLiteral("Cut"), QKeySequence::Cut, "cut");
    addForFocus(edit, focus, QStringLiteral("Copy"), QKeySequence::Copy, "copy");
    addForFocus(edit, focus, QStringLiteral("Paste"), QKeySequence::Paste, "paste");
    addForFocus(edit, focus, QStringLiteral("Select All"), QKeySequence::SelectAll, "selectAll");
    edit->addSeparator();
    add(edit, QStringLiteral("Search Pages"), QKeySequence(Qt::CTRL | Qt::Key_F), call(&MenuActions::focusSearch));

    QMenu* view = bar->addMenu(QStringLiteral("View"));
    QAction* sidebar = add(view, {}, isMac ? QKeySequence(Qt::META | Qt::CTRL | Qt::Key_S) : QKeySequence(Qt::Key_F9),
                           call(&MenuActions::toggleSidebar));
    add(view, QStringLiteral("Enter Full Screen"),
        isMac ? QKeySequence(Qt::META | Qt::CTRL | Qt::Key_F) : QKeySequence(Qt::Key_F11),
        call(&MenuActions::toggleFullScreen));

    QMenu* go = bar->addMenu(QStringLiteral("Go"));
    QAction* back =
        add(go, QStringLiteral("Back"), QKeySequence(Qt::CTRL | Qt::Key_BracketLeft), [&model] { model.goBack(); });
    QAction* forward = add(go, QStringLiteral("Forward"), QKeySequence(Qt::CTRL | Qt::Key_BracketRight),
                           [&model] { model.goForward(); });
    go->addSeparator();
    auto* group = new QActionGroup(go);
    for (const Page page : shortcutPages()) {
        QAction* item = add(go, text(title(page, words)), {}, [shared, page] { shared->goToPage(page); });
        item->setIcon(Icons::icon(Icons::nameOf(page)));
        item->setData(text(rawValue(page)));
        item->setCheckable(true);
        group->addAction(item);
    }

    QMenu* window = bar->addMenu(QStringLiteral("Window"));
    add(window, QStringLiteral("Minimize"), QKeySequence(Qt::CTRL | Qt::Key_M), call(&MenuActions::minimize));
    add(window, QStringLiteral("Zoom"), {}, call(&MenuActions::zoom));
    add(window, QStringLiteral("Close"), QKeySequence(Qt::CTRL | Qt::Key_W), call(&MenuActions::close));
    window->addSeparator();
    add(window, QStringLiteral("Ostrivane"), QKeySequence(Qt::CTRL | Qt::Key_0), call(&MenuActions::showMainWindow));

    const auto validate = [&model, sidebar, back, forward, group] {
        back->setEnabled(!model.navigation().backStack().empty());
        forward->setEnabled(!model.navigation().forwardStack().empty());
        sidebar->setText(model.isSidebarVisible() ? QStringLiteral("Hide Sidebar") : QStringLiteral("Show Sidebar"));
        const QString selected = text(rawValue(model.navigation().selectedPage()));
        for (QAction* item : group->actions())
            item->setChecked(item->data().toString() == selected);
    };
    validate();
    auto watching = std::make_shared<Subscription>(model.observe([validate](const ModelChanges& changes) {
        if (changes.navigation)
            validate();
    }));
    QObject::connect(bar, &QObject::destroyed, [watching] { watching->disconnect(); });
    return bar;
}

} // namespace ostrivane
