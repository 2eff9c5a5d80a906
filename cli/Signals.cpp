#include "cli/Signals.hpp"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace ostrivane::cli {

bool isIgnored(int signal) {
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

bool isFromKeyboard(int signal) {
    if (signal != SIGINT && signal != SIGQUIT)
        return false;
    const int terminal = ::open("/dev/tty", O_RDONLY | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0)
        return false;
    const bool isInFront = ::tcgetpgrp(terminal) == ::getpgrp();
    ::close(terminal);
    return isInFront;
}

} // namespace ostrivane::cli
