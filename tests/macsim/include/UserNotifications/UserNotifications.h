// What the desktop's sources call of UserNotifications, under the system's names. Only to compile them: nothing stands
// behind.
#pragma once

#import <Foundation/Foundation.h>

enum UNAuthorizationStatus : NSInteger {};
// The system's options can be joined without a cast.
using UNAuthorizationOptions = NSUInteger;
constexpr UNAuthorizationOptions UNAuthorizationOptionSound = 2;
constexpr UNAuthorizationOptions UNAuthorizationOptionAlert = 4;

@interface UNNotificationSettings : NSObject
@property(readonly) UNAuthorizationStatus authorizationStatus;
@end

@interface UNNotificationContent : NSObject
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property(copy) NSString* title;
@property(copy) NSString* body;
@property(copy) NSString* threadIdentifier;
@end

@interface UNNotificationTrigger : NSObject
@end

@interface UNNotificationRequest : NSObject
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(UNNotificationTrigger*)trigger;
@end

@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter*)currentNotificationCenter;
- (void)getNotificationSettingsWithCompletionHandler:(void (^)(UNNotificationSettings*))handler;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL, NSError*))handler;
- (void)addNotificationRequest:(UNNotificationRequest*)request withCompletionHandler:(void (^)(NSError*))handler;
@end
