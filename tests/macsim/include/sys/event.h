// Kernel queues, as far as one timer needs them.
#pragma once
#pragma GCC system_header // a record and a function of one name, as the system has it

#include <cstdint>
#include <ctime>

#define EVFILT_TIMER (-7)
#define EV_ADD 0x0001
#define EV_ONESHOT 0x0010
#define NOTE_NSECONDS 0x00000004
#define NOTE_CRITICAL 0x00000020
#define NOTE_MACH_CONTINUOUS_TIME 0x00000080

struct kevent {
    std::uintptr_t ident;
    std::int16_t filter;
    std::uint16_t flags;
    std::uint32_t fflags;
    std::intptr_t data;
    void* udata;
};

extern "C" {
int kqueue();
int kevent(int queue, const struct kevent* changes, int changeCount, struct kevent* events, int eventCount,
           const struct timespec* timeout);
}
