#include "core/sampling/platform/Pipe.hpp"

#include <fcntl.h>

namespace ostrivane {

namespace {

PipeEnd aboveStandard(PipeEnd end) {
    if (!end.isOpen() || end.get() > STDERR_FILENO)
        return end;
    return PipeEnd(::fcntl(end.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

/// A process that another thread starts must not inherit the ends: it would hold the pipe open. macOS cannot open and
/// mark in one step.
template <class Ends>
bool openMarked(Ends& ends) {
    if constexpr (requires { pipe2(ends, O_CLOEXEC); })
        return pipe2(ends, O_CLOEXEC) == 0;
    else
        return ::pipe(ends) == 0 && ::fcntl(ends[0], F_SETFD, FD_CLOEXEC) == 0 &&
               ::fcntl(ends[1], F_SETFD, FD_CLOEXEC) == 0;
}

} // namespace

std::optional<Pipe> Pipe::open() {
    int ends[2] = {-1, -1};
    const bool opened = openMarked(ends);
    Pipe pipe{PipeEnd(ends[0]), PipeEnd(ends[1])};
    if (!opened)
        return std::nullopt;
    Pipe moved{aboveStandard(std::move(pipe.readEnd)), aboveStandard(std::move(pipe.writeEnd))};
    return moved.readEnd.isOpen() && moved.writeEnd.isOpen() ? std::optional(std::move(moved)) : std::nullopt;
}

} // namespace ostrivane
