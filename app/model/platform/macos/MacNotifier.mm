#include "app/model/NotificationPermission.hpp"
#include "app/model/NotificationText.hpp"
#include "app/model/Notifier.hpp"
#include "core/judgement/Alert.hpp"

#include <boost/uuid/uuid_io.hpp>

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

#include <string>
#include <string_view>

namespace ostrivane {

namespace {

NSString* native(std::string_view text) {
    return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}

void ask(UNUserNotificationCenter* centre) {
    [centre requestAuthorizationWithOptions:UNAuthorizationOptionAlert | UNAuthorizationOptionSound
                          completionHandler:^(BOOL /*isGranted*/, NSError* /*error*/){
                          }];
}

UNNotificationRequest* requestFor(const Alert& alert) {
    const NotificationText text = notificationText(alert);
    UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
    content.title = native(text.title);
    content.body = native(text.body);
    content.threadIdentifier = native(rawValue(alert.kind));
    return [UNNotificationRequest requestWithIdentifier:native(boost::uuids::to_string(alert.id))
                                                content:content
                                                trigger:nil];
}

/// Shows alerts in the notification centre. The desktop answers on threads of its own, which use nothing of this
/// object.
class MacNotifier final : public Notifier {
public:
    void post(const Alert& alert) override {
        @autoreleasepool {
            UNUserNotificationCenter* centre = [UNUserNotificationCenter currentNotificationCenter];
            UNNotificationRequest* request = requestFor(alert);
            [centre getNotificationSettingsWithCompletionHandler:^(UNNotificationSettings* settings) {
              switch (notificationStep(settings.authorizationStatus)) {
              case NotificationStep::deliver:
                  [centre addNotificationRequest:request withCompletionHandler:nil];
                  break;
              case NotificationStep::ask:
                  ask(centre);
                  break;
              case NotificationStep::nothing:
                  break;
              }
            }];
        }
    }

    void requestAuthorization() override {
        @autoreleasepool {
            ask([UNUserNotificationCenter currentNotificationCenter]);
        }
    }
};

} // namespace

std::unique_ptr<Notifier> nativeNotifier() {
    @autoreleasepool {
        const char* path = NSBundle.mainBundle.bundlePath.UTF8String;
        if (!isApplicationBundle(path ? path : ""))
            return std::make_unique<SilentNotifier>();
        return std::make_unique<MacNotifier>();
    }
}

} // namespace ostrivane
