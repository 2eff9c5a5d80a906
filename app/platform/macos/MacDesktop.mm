#include "app/window/DesktopAppearance.hpp"
#include "app/window/SingleInstance.hpp"
#include "app/window/WindowVisibility.hpp"

#import <AppKit/AppKit.h>
#include <QEvent>
#include <QGuiApplication>
#include <QObject>

#include <utility>

namespace ostrivane {

namespace {

/// The toolkit's palette follows the system until the program sets its own; the system is asked then.
class MacAppearance final : public QObject, public DesktopAppearance {
public:
    MacAppearance() { qApp->installEventFilter(this); }
    bool prefersDark() const override {
        NSAppearanceName const best = [NSApp.effectiveAppearance
            bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
        return [best isEqualToString:NSAppearanceNameDarkAqua];
    }
    void onChange(std::function<void()> observer) override { changed = std::move(observer); }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::ThemeChange && changed)
            changed();
        return false;
    }

private:
    std::function<void()> changed;
};

/// The system starts a program once.
class SystemInstance final : public SingleInstance {
public:
    Role claim(const std::optional<Page>&) override { return Role::first; }
    void onActivated(std::function<void(std::optional<Page>)>) override {}
};

} // namespace

std::unique_ptr<DesktopAppearance> nativeDesktopAppearance() {
    return std::make_unique<MacAppearance>();
}

std::unique_ptr<SingleInstance> nativeSingleInstance(const std::string&) {
    return std::make_unique<SystemInstance>();
}

CoveredWindows* makeCoveredWindows(QObject*) {
    return nullptr; // the toolkit's exposure follows the system's occlusion
}

} // namespace ostrivane
