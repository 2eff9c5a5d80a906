#pragma once

#include <optional>
#include <utility>

#include <unistd.h>

namespace ostrivane {

/// One end of a pipe, closed at the end of its owner's life.
class PipeEnd {
public:
    explicit PipeEnd(int descriptor) : number(descriptor) {}
    PipeEnd(PipeEnd&& other) noexcept : number(std::exchange(other.number, -1)) {}
    PipeEnd& operator=(PipeEnd&&) = delete;
    ~PipeEnd() { close(); }

    int get() const { return number; }
    bool isOpen() const { return number >= 0; }
    void close() {
        if (isOpen())
            ::close(std::exchange(number, -1));
    }

private:
    int number;
};

/// A pipe that no child process inherits by accident, with numbers that are none of the standard three, which a host
/// program without them would have been handed out: a child's own arrangement of these would fall over it.
struct Pipe {
    PipeEnd readEnd;
    PipeEnd writeEnd;

    static std::optional<Pipe> open();
};

} // namespace ostrivane
