#include "core/sampling/platform/ChildLaunch.hpp"

#include "core/sampling/platform/DescriptorLimit.hpp"
#include "core/sampling/platform/Pipe.hpp"

#include <cerrno>

#include <fcntl.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrivane {

namespace {

constexpr int cannotRun = 127; ///< exit status of a child that did not become the program

void forgetSignals() {
    struct sigaction atLogin {};
    atLogin.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal)
        ::sigaction(signal, &atLogin, nullptr); // refused for those that nobody can handle
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool becomes(int wanted, const char* path, int flags) {
    ::close(wanted); // so that it is the first free number
    return ::open(path, flags) == wanted;
}

/// The child's way to its program. Other threads of the host may have held any lock when it came into being: only calls
/// that take none are allowed here.
void run(const ChildLaunch& launch) {
    forgetSignals();
    if (::setsid() < 0 || !becomes(STDIN_FILENO, "/dev/null", O_RDONLY) ||
        ::dup2(launch.output, STDOUT_FILENO) != STDOUT_FILENO || !becomes(STDERR_FILENO, "/dev/null", O_WRONLY))
        return;
    // What libraries of the host program left unmarked; everything of ours is marked, so an older kernel may refuse.
    // By number, because an older C library has no name for it.
    constexpr unsigned closeOnExec = 1U << 2;
    ::syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, closeOnExec);
    DescriptorLimit::putBack();
    ::execve(launch.path, launch.arguments, launch.environment);
}

/// Nothing arrives from a child that became its program: the end it was to write to has closed by then.
bool hasFailed(int readEnd) {
    char byte;
    ssize_t count;
    do
        count = ::read(readEnd, &byte, 1);
    while (count < 0 && errno == EINTR);
    return count != 0;
}

} // namespace

/// `posix_spawn` cannot set a limit of resources, and one that is set once the child runs may come too late.
std::optional<pid_t> ChildLaunch::start() const {
    auto failure = Pipe::open();
    if (!failure)
        return std::nullopt;
    sigset_t all, before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before); // no handler of the host may run in the child
    const pid_t pid = ::fork();
    if (pid == 0) {
        run(*this);
        while (::write(failure->writeEnd.get(), "!", 1) < 0 && errno == EINTR) {
        }
        ::_exit(cannotRun);
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (pid < 0)
        return std::nullopt;
    failure->writeEnd.close();
    if (!hasFailed(failure->readEnd.get()))
        return pid;
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    return std::nullopt;
}

} // namespace ostrivane
