#include "app/window/LoginItem.hpp"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#import <ServiceManagement/ServiceManagement.h>

#include <functional>
#include <utility>

namespace ostrivane {

namespace {

/// Of the event that opens the program, which is at hand only while it is handled.
bool opensAtLogin() {
    NSAppleEventDescriptor* const opening = NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
    return [opening paramDescriptorForKeyword:keyAEPropData].enumCodeValue == keyAELaunchedAsLogInItem;
}

class MacLoginItem final : public LoginItem {
public:
    MacLoginItem() = default;
    ~MacLoginItem() override { forget(); }
    MacLoginItem(const MacLoginItem&) = delete;
    MacLoginItem& operator=(const MacLoginItem&) = delete;

    State state() const override {
        switch (SMAppService.mainAppService.status) {
        case SMAppServiceStatusEnabled:
            return State::on;
        case SMAppServiceStatusRequiresApproval:
            return State::needsApproval;
        case SMAppServiceStatusNotRegistered:
            return State::off;
        case SMAppServiceStatusNotFound:
            return State::off;
        }
        return State::unknown;
    }

    std::optional<std::string> set(bool enabled) override {
        NSError* error = nil;
        SMAppService* const service = SMAppService.mainAppService;
        if (enabled ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error])
            return std::nullopt;
        const char* words = error.localizedDescription.UTF8String;
        return std::string(words ? words : "The system does not say why.");
    }

    /// The toolkit's event loop runs the application, which handles the opening event as one of its first and tells
    /// of the launch meanwhile.
    void onLaunched(const std::function<void(bool atLogin)>& launched) override {
        if (!NSApp) // drawn without the system's desktop, which then launches nothing
            return launched(false);
        forget();
        observer = [NSNotificationCenter.defaultCenter addObserverForName:NSApplicationDidFinishLaunchingNotification
                                                                   object:nil
                                                                    queue:nil // at once: the event is gone afterwards
                                                               usingBlock:^(NSNotification* /*notification*/) {
                                                                 launched(opensAtLogin());
                                                               }];
    }

private:
    void forget() {
        if (observer)
            [NSNotificationCenter.defaultCenter removeObserver:observer];
        observer = nil;
    }

    id<NSObject> observer = nil;
};

} // namespace

std::unique_ptr<LoginItem> nativeLoginItem() {
    return std::make_unique<MacLoginItem>();
}

} // namespace ostrivane
