#include "tests/macsim/FakeParts.hpp"
#include "tests/macsim/FakeSystem.hpp"

#include <poll.h>
#include <sys/event.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace {

/// The reading end of a pipe stands for the queue and turns readable as one does. Its writing end stays here: it tells
/// when the other was closed.
struct Queue {
    int given;
    int kept;
    std::optional<std::int64_t> nanos;
};

std::vector<Queue> queues;

bool isOpen(const Queue& queue) {
    pollfd end{queue.kept, POLLOUT, 0};
    return poll(&end, 1, 0) >= 0 && (end.revents & POLLERR) == 0;
}

void forgetClosed() {
    std::erase_if(queues, [](const Queue& queue) {
        if (isOpen(queue))
            return false;
        close(queue.kept);
        return true;
    });
}

} // namespace

namespace macsim {

std::vector<std::int64_t> timers() {
    forgetClosed();
    std::vector<std::int64_t> waiting;
    for (const Queue& queue : queues)
        if (queue.nanos)
            waiting.push_back(*queue.nanos);
    return waiting;
}

void fireTimers() {
    forgetClosed();
    for (Queue& queue : queues)
        if (queue.nanos && write(queue.kept, "", 1) == 1)
            queue.nanos.reset();
}

void forgetQueues() {
    for (const Queue& queue : queues)
        close(queue.kept);
    queues.clear();
}

std::size_t liveQueues() {
    forgetClosed();
    return queues.size();
}

} // namespace macsim

int kqueue() {
    int ends[2];
    if (macsim::refused("kqueue") || pipe(ends) != 0) {
        errno = EMFILE;
        return -1;
    }
    forgetClosed(); // its number may be in use again
    queues.push_back({ends[0], ends[1], std::nullopt});
    return ends[0];
}

/// Takes a timer that fires once and goes on while the machine sleeps. Any other would miss a tick in sleep or fire in
/// the wrong unit.
int kevent(int queue, const struct kevent* changes, int changeCount, struct kevent*, int, const struct timespec*) {
    if (macsim::refused("kevent")) {
        errno = ENOMEM;
        return -1;
    }
    for (Queue& known : queues) {
        if (known.given != queue || changeCount != 1)
            continue;
        if (changes->filter != EVFILT_TIMER || changes->flags != (EV_ADD | EV_ONESHOT) ||
            changes->fflags != (NOTE_NSECONDS | NOTE_MACH_CONTINUOUS_TIME | NOTE_CRITICAL) || changes->data <= 0)
            break;
        known.nanos = changes->data;
        return 0;
    }
    macsim::fault("kevent with a change that is not understood");
    errno = EINVAL;
    return -1;
}
