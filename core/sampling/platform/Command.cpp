#include "core/sampling/platform/Command.hpp"

#include "core/model/Text.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
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

class Descriptor {
public:
    explicit Descriptor(int descriptor) : number(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() { close(); }

    int get() const { return number; }
    bool isOpen() const { return number >= 0; }
    void close() {
        if (isOpen())
            ::close(std::exchange(number, -1));
    }

private:
    int number;
};

/// The same file under a number that is none of the standard three, which a host without them would have handed out:
/// the child's own arrangement of these would fall over it.
Descriptor aboveStandard(Descriptor descriptor) {
    if (!descriptor.isOpen() || descriptor.get() > STDERR_FILENO)
        return descriptor;
    return Descriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

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

std::optional<Pipe> openPipe() {
    int ends[2] = {-1, -1};
    const bool opened = openMarked(ends);
    Pipe pipe{Descriptor(ends[0]), Descriptor(ends[1])};
    if (!opened)
        return std::nullopt;
    Pipe moved{aboveStandard(std::move(pipe.readEnd)), aboveStandard(std::move(pipe.writeEnd))};
    return moved.readEnd.isOpen() && moved.writeEnd.isOpen() ? std::optional(std::move(moved)) : std::nullopt;
}

/// What the child's descriptors are made of.
class FileActions {
public:
    FileActions() { ready = ::posix_spawn_file_actions_init(&actions) == 0; }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() {
        if (ready)
            ::posix_spawn_file_actions_destroy(&actions);
    }

    bool prepare(int output) {
        return ready && ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO) == 0 &&
               ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
               ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0) == 0 &&
               closeOthers(actions);
    }
    const posix_spawn_file_actions_t* get() const { return &actions; }

private:
    /// Newer C libraries can close what libraries of the host program left unmarked; everything of ours is marked.
    template <class Actions>
    static bool closeOthers(Actions& list) {
        if constexpr (requires { posix_spawn_file_actions_addclosefrom_np(&list, STDERR_FILENO + 1); })
            return posix_spawn_file_actions_addclosefrom_np(&list, STDERR_FILENO + 1) == 0;
        else
            return true;
    }

    posix_spawn_file_actions_t actions{};
    bool ready;
};

/// How the child begins: in a session of its own, which can be ended as a whole and has no terminal to ask at, and with
/// no signal ignored or held back, whatever the host program does with them.
class Attributes {
public:
    Attributes() { ready = ::posix_spawnattr_init(&attributes) == 0; }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() {
        if (ready)
            ::posix_spawnattr_destroy(&attributes);
    }

    bool prepare() {
        short flags = POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT // leaves the child the three descriptors of the file actions
        flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#endif
        sigset_t all;
        sigset_t none;
        sigfillset(&all);
        sigdelset(&all, SIGKILL);
        sigdelset(&all, SIGSTOP);
        sigemptyset(&none);
        return ready && ::posix_spawnattr_setsigdefault(&attributes, &all) == 0 &&
               ::posix_spawnattr_setsigmask(&attributes, &none) == 0 &&
               ::posix_spawnattr_setflags(&attributes, flags) == 0;
    }
    const posix_spawnattr_t* get() const {
        return &attributes;
    }

private:
    posix_spawnattr_t attributes{};
    bool ready;
};

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
    FileActions actions;
    Attributes attributes;
    if (!actions.prepare(output) || !attributes.prepare())
        return std::nullopt;
    std::vector<char*> words{path.data()};
    for (std::string& argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);
    std::string language = "LC_ALL=C";
    const std::vector<char*> environment = plainEnvironment(language);
    pid_t pid = 0;
    if (::posix_spawn(&pid, path.c_str(), actions.get(), attributes.get(), words.data(), environment.data()) != 0)
        return std::nullopt;
    return Child(pid);
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
    std::optional<Pipe> pipe = openPipe();
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
