#include "app/model/ListedApplication.hpp"
#include "app/model/Workspace.hpp"

#import <AppKit/AppKit.h>

#include <utility>
#include <vector>

namespace ostrivane {

namespace {

/// Kept current by the main thread's loop alone: for that thread.
RunningApps runningApps() {
    @autoreleasepool {
        std::vector<ListedApplication> listed;
        for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
            ListedApplication found;
            if (const char* path = application.bundleURL.path.UTF8String)
                found.bundlePath = path;
            found.activationPolicy = application.activationPolicy;
            found.pid = application.processIdentifier;
            listed.push_back(std::move(found));
        }
        return recognisable(listed);
    }
}

class MacWorkspace final : public Workspace {
public:
    MacWorkspace() : observers([[NSMutableArray alloc] init]) {}
    ~MacWorkspace() override { stop(); }
    MacWorkspace(const MacWorkspace&) = delete;
    MacWorkspace& operator=(const MacWorkspace&) = delete;

    void observe(std::function<void(RunningApps)> changed) override {
        stop();
        @autoreleasepool {
            NSNotificationCenter* centre = NSWorkspace.sharedWorkspace.notificationCenter;
            for (NSNotificationName name in
                 @[ NSWorkspaceDidLaunchApplicationNotification, NSWorkspaceDidTerminateApplicationNotification ])
                [observers addObject:[centre addObserverForName:name
                                                         object:nil
                                                          queue:NSOperationQueue.mainQueue
                                                     usingBlock:^(NSNotification* /*notification*/) {
                                                       changed(runningApps());
                                                     }]];
        }
        changed(runningApps());
    }

private:
    void stop() {
        @autoreleasepool {
            for (id observer in observers)
                [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:observer];
            [observers removeAllObjects];
        }
    }

    NSMutableArray<id>* observers;
};

} // namespace

std::unique_ptr<Workspace> nativeWorkspace() {
    return std::make_unique<MacWorkspace>();
}

} // namespace ostrivane
