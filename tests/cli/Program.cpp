#include "tests/cli/Program.hpp"

#include "tests/TemporaryFolder.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

namespace ostrivane {

namespace {

constexpr int patienceMs = 20'000; // for a machine under load; nothing here takes a second

int exitStatus(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

[[noreturn]] void become(const std::vector<std::string>& arguments) {
    std::vector<char*> argv{const_cast<char*>(OSTRIVANECTL)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    ::execv(OSTRIVANECTL, argv.data());
    ::_exit(127);
}

} // namespace

Finished runProgram(const std::vector<std::string>& arguments, const std::string& output) {
    const TemporaryFolder folder;
    const std::string out = output.empty() ? folder.file("out") : output;
    const std::string err = folder.file("err");
    const pid_t process = ::fork();
    if (process == 0) {
        ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
        ::dup2(::open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
        ::dup2(::open(err.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
        become(arguments);
    }
    Finished finished{exitStatus(process), {}, contentOf(err)};
    if (output.empty())
        finished.out = contentOf(out);
    return finished;
}

TerminalRun::TerminalRun(const std::vector<std::string>& arguments, int width, int height,
                         const std::vector<std::string>& environment) {
    control = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ::grantpt(control);
    ::unlockpt(control);
    const std::string name = ::ptsname(control);
    kept = ::open(name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ::tcgetattr(kept, &before);
    resize(width, height);
    process = ::fork();
    if (process == 0) {
        ::setsid();
        const int terminal = ::open(name.c_str(), O_RDWR); // a session's first terminal becomes its own
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::dup2(terminal, descriptor);
        ::setenv("TERM", "xterm-256color", 1);
        ::setenv("LC_ALL", "C.UTF-8", 1);
        for (const std::string& setting : environment)
            ::putenv(const_cast<char*>(setting.c_str()));
        become(arguments);
    }
}

TerminalRun::~TerminalRun() {
    if (status < 0) {
        ::kill(process, SIGKILL);
        exitStatus(process);
    }
    ::close(kept);
    ::close(control);
}

bool TerminalRun::read() {
    char buffer[4096];
    const ssize_t size = ::read(control, buffer, sizeof buffer);
    if (size > 0)
        written.append(buffer, static_cast<std::size_t>(size));
    return size > 0;
}

bool TerminalRun::sees(std::string_view text) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(patienceMs);
    const std::size_t from = written.size();
    while (written.find(text, from) == std::string::npos) {
        pollfd waiting{control, POLLIN, 0};
        if (std::chrono::steady_clock::now() > until || ::poll(&waiting, 1, 1000) < 0)
            return false;
        if (waiting.revents != 0 && !read())
            return false;
        int ended = 0;
        if (waiting.revents == 0 && ::waitpid(process, &ended, WNOHANG) == process) {
            status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
            return false;
        }
    }
    return true;
}

void TerminalRun::readUntilQuiet() {
    constexpr int momentMs = 40;
    for (pollfd waiting{control, POLLIN, 0}; ::poll(&waiting, 1, momentMs) > 0 && read();) {
    }
}

void TerminalRun::type(std::string_view keys) {
    if (::write(control, keys.data(), keys.size()) < 0)
        std::perror("type");
}

void TerminalRun::resize(int width, int height) {
    winsize size{};
    size.ws_col = static_cast<unsigned short>(width);
    size.ws_row = static_cast<unsigned short>(height);
    ::ioctl(control, TIOCSWINSZ, &size);
}

void TerminalRun::signal(int number) {
    ::kill(process, number);
}

int TerminalRun::wait() {
    // A full terminal would hold the program up: read along until it is gone.
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(patienceMs);
    while (status < 0) {
        if (std::chrono::steady_clock::now() > until)
            ::kill(process, SIGKILL); // which the status then shows
        pollfd waiting{control, POLLIN, 0};
        if (::poll(&waiting, 1, 20) > 0)
            read();
        int ended = 0;
        if (::waitpid(process, &ended, WNOHANG) == process)
            status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
    }
    for (pollfd waiting{control, POLLIN, 0}; ::poll(&waiting, 1, 0) > 0 && read();) {
    }
    return status;
}

termios TerminalRun::settings() const {
    termios now{};
    ::tcgetattr(kept, &now);
    return now;
}

bool TerminalRun::isNonBlocking() const {
    return (::fcntl(kept, F_GETFL) & O_NONBLOCK) != 0;
}

} // namespace ostrivane
