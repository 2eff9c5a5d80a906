// What the desktop's sources call of AppKit, under the system's names. Only to compile them: nothing stands behind.
#pragma once

#import <Foundation/Foundation.h>

#include <sys/types.h>

enum NSApplicationActivationPolicy : NSInteger {};

@interface NSRunningApplication : NSObject
@property(readonly) NSURL* bundleURL;
@property(readonly) NSApplicationActivationPolicy activationPolicy;
@property(readonly) pid_t processIdentifier;
@end

@interface NSWorkspace : NSObject
@property(class, readonly) NSWorkspace* sharedWorkspace;
@property(readonly) NSNotificationCenter* notificationCenter;
@property(readonly) NSArray<NSRunningApplication*>* runningApplications;
@end

extern NSNotificationName const NSWorkspaceDidLaunchApplicationNotification;
extern NSNotificationName const NSWorkspaceDidTerminateApplicationNotification;
