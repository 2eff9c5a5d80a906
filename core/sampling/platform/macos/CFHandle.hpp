#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace ostrivane {

/// Owner of one reference to a Core Foundation object, as functions with Create or Copy in their name hand them out.
/// What a function with Get in its name returns is borrowed and never goes in here.
template <class Ref>
class CFHandle {
public:
    CFHandle() = default;
    explicit CFHandle(Ref owned) : ref(owned) {}
    CFHandle(CFHandle&& other) noexcept : ref(std::exchange(other.ref, nullptr)) {}
    CFHandle& operator=(CFHandle&& other) noexcept {
        std::swap(ref, other.ref);
        return *this;
    }
    ~CFHandle() {
        if (ref) // releasing none crashes
            CFRelease(ref);
    }

    Ref get() const { return ref; }
    explicit operator bool() const { return ref != nullptr; }

private:
    Ref ref = nullptr;
};

} // namespace ostrivane
