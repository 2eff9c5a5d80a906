#include "core/sampling/platform/Command.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/ChildLaunch.hpp"
#include "core/sampling/platform/Pipe.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // macOS has no header for it

namespace ostrivane::Command {

namespace {

using Clock = std::chrono::steady_clock; // stands still while the machine sleeps, as the tool does
using Deadline = Clock::time_point;

constexpr std::size_t largestOutput = std::size_t(64) << 20; // no tool we ask prints a tenth of it
constexpr std::chrono::milliseconds gentleness{200};         // between asking a tool to end and killing it
constexpr std::chrono::milliseconds patience{300};           // for the kernel to take a killed process down

Deadline deadlineIn(double seconds) {
    constexpr double longest = 86'400; // far beyond any tool, and it fits the clock
    const double bounded = seconds > 0 ? std::min(seconds, longest) : 0;
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(bounded));
}

/// The process that a tool runs in. It is gone, and waited for, when its owner goes.
class Child {
public:
    explicit Child(pid_t process) : pid(process) {}
    Child(Child&& other) noexcept : pid(std::exchange(other.pid, 0)) {}
    Child& operator=(Child&&) = delete;
    ~Child() {
        if (pid > 0)
            end();
    }

    /// It ended by itself before `deadline`, and is waited for.
    bool endsBefore(Deadline deadline) {
        if (!exitsBefore(deadline))
            return false;
        reap();
        return true;
    }

private:
    /// It is left to be waited for: until then nothing else can get its number, nor can its group's.
    bool hasExited() const {
        siginfo_t info{};
        if (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) != 0)
            return errno == ECHILD; // the host program ignores SIGCHLD, or waits for every child itself
        return info.si_pid == pid;
    }

    bool exitsBefore(Deadline deadline) const {
        // Nothing portable wakes on a child's end with a time limit; most end while they close their output.
        std::chrono::microseconds pause{100};
        while (!hasExited()) {
            const auto left = deadline - Clock::now();
            if (left <= Clock::duration::zero())
                return false;
            std::this_thread::sleep_for(std::min<Clock::duration>(left, pause));
            pause = std::min(pause * 2, std::chrono::microseconds(10'000));
        }
        return true;
    }

    void end() {
        ::kill(-pid, SIGTERM);
        exitsBefore(Clock::now() + gentleness);
        ::kill(-pid, SIGKILL); // in any case: its children may have ignored the first
        if (exitsBefore(Clock::now() + patience))
            reap();
        else
            reapLater();
    }

    static void waitFor(pid_t process) {
        while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }

    void reap() { waitFor(std::exchange(pid, 0)); }

    /// It waits in the kernel for a device or a server that does not answer; that may take for ever.
    void reapLater() {
        try {
            std::thread(waitFor, std::exchange(pid, 0)).detach();
        } catch (const std::system_error&) { // no thread to be had: it stays a zombie
        }
    }

    pid_t pid;
};

bool isExecutableFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

/// Our environment with the language of programs: figures and words as the parsers know them.
std::vector<char*> plainEnvironment(std::string& language) {
    std::vector<char*> variables;
    for (char** variable = environ; variable && *variable; ++variable)
        if (!std::string_view(*variable).starts_with("LC_ALL="))
            variables.push_back(*variable);
    variables.push_back(language.data());
    variables.push_back(nullptr);
    return variables;
}

std::optional<Child> launch(std::string path, std::vector<std::string> arguments, int output) {
    std::vector<char*> words{path.data()};
    for (std::string& argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);
    std::string language = "LC_ALL=C";
    const std::vector<char*> environment = plainEnvironment(language);
    const ChildLaunch child{path.c_str(), words.data(), environment.data(), output};
    const auto pid = child.start();
    return pid ? std::optional<Child>(*pid) : std::nullopt;
}

bool readableBefore(int descriptor, Deadline deadline) {
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0)
            return false; // also while the tool goes on writing
        pollfd wanted{.fd = descriptor, .events = POLLIN, .revents = 0};
        const int count = ::poll(&wanted, 1, static_cast<int>(left.count()));
        if (count > 0)
            return true;
        if (count < 0 && errno != EINTR)
            return false;
    }
}

std::optional<std::string> readToEnd(int descriptor, Deadline deadline) {
    std::string text;
    std::array<char, 65'536> piece;
    while (readableBefore(descriptor, deadline)) {
        const ssize_t count = ::read(descriptor, piece.data(), piece.size());
        if (count == 0)
            return text;
        if (count < 0 && errno != EINTR)
            return std::nullopt;
        if (count > 0)
            text.append(piece.data(), static_cast<std::size_t>(count));
        if (text.size() > largestOutput)
            return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> run(const std::string& path, const std::vector<std::string>& arguments, double timeout) {
    if (!isExecutableFile(path))
        return std::nullopt;
    const Deadline deadline = deadlineIn(timeout);
    std::optional<Pipe> pipe = Pipe::open();
    if (!pipe)
        return std::nullopt;
    std::optional<Child> child = launch(path, arguments, pipe->writeEnd.get());
    pipe->writeEnd.close();
    if (!child)
        return std::nullopt;
    const std::optional<std::string> output = readToEnd(pipe->readEnd.get(), deadline);
    pipe->readEnd.close(); // ends a tool that is still writing
    if (!output || !child->endsBefore(deadline))
        return std::nullopt;
    return Text::repaired(*output);
}

} // namespace ostrivane::Command
