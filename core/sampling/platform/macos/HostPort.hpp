#pragma once

#include <mach/mach.h>

namespace ostrivane {

/// The right to ask the kernel about the machine. `mach_host_self` adds a right each time it is called, so one is got
/// and kept; the readers share it.
class HostPort {
public:
    HostPort() : port(mach_host_self()) {}
    HostPort(const HostPort&) = delete;
    HostPort& operator=(const HostPort&) = delete;
    ~HostPort() {
        if (port != MACH_PORT_NULL)
            mach_port_deallocate(mach_task_self(), port);
    }

    host_t get() const { return port; }

private:
    host_t port;
};

} // namespace ostrivane
