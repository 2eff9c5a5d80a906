#include "app/window/DesktopAppearance.hpp"
#include "app/window/SingleInstance.hpp"
#include "app/window/WindowVisibility.hpp"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#include <QEvent>
#include <QGuiApplication>
#include <QObject>

#include <functional>
#include <optional>
#include <utility>

/// Is told when the running program is opened again, as by a click on its icon.
@interface OstrivaneReopening : NSObject {
@public
    std::function<void(std::optional<ostrivane::Page>)> activated;
}
- (void)handleEvent:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply;
@end

@implementation OstrivaneReopening
- (void)handleEvent:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply {
    activated(std::nullopt);
}
@end

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

/// The system starts a program once, and sends it an event when it is opened again. The toolkit's handler, which this
/// one takes the place of, was set before the launch was over.
class SystemInstance final : public SingleInstance {
public:
    SystemInstance() = default;
    ~SystemInstance() override {
        if (reopening)
            [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                              andEventID:kAEReopenApplication];
    }
    SystemInstance(const SystemInstance&) = delete;
    SystemInstance& operator=(const SystemInstance&) = delete;

    bool claim() override { return true; }
    bool canBeActivated() const override { return true; }
    bool showFirst(const std::optional<Page>&) override { return false; }
    void onActivated(std::function<void(std::optional<Page>)> activated) override {
        OstrivaneReopening* const handler = [[OstrivaneReopening alloc] init];
        handler->activated = std::move(activated);
        [NSAppleEventManager.sharedAppleEventManager setEventHandler:handler
                                                         andSelector:@selector(handleEvent:withReplyEvent:)
                                                       forEventClass:kCoreEventClass
                                                          andEventID:kAEReopenApplication];
        reopening = handler; // which the system does not keep
    }

private:
    OstrivaneReopening* reopening = nil;
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
