#pragma once

#include <IOKit/IOKitLib.h>

#include <utility>

namespace ostrivane {

/// Owner of one reference to an entry of the I/O registry or to an iterator over entries.
class IOHandle {
public:
    IOHandle() = default;
    explicit IOHandle(io_object_t owned) : object(owned) {}
    IOHandle(IOHandle&& other) noexcept : object(std::exchange(other.object, io_object_t{0})) {}
    IOHandle& operator=(IOHandle&& other) noexcept {
        std::swap(object, other.object);
        return *this;
    }
    ~IOHandle() {
        if (object != 0)
            IOObjectRelease(object);
    }

    io_object_t get() const { return object; }
    explicit operator bool() const { return object != 0; }

private:
    io_object_t object = 0;
};

} // namespace ostrivane
