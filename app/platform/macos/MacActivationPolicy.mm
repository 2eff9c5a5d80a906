#include "app/window/ActivationPolicy.hpp"

#import <AppKit/AppKit.h>

namespace ostrivane {

void updateActivationPolicy(bool isRegular) {
    const NSApplicationActivationPolicy wanted =
        isRegular ? NSApplicationActivationPolicyRegular : NSApplicationActivationPolicyAccessory;
    if (NSApp.activationPolicy != wanted)
        [NSApp setActivationPolicy:wanted];
}

} // namespace ostrivane
