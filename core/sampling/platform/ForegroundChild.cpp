#include "core/sampling/platform/ForegroundChild.hpp"

#include "core/sampling/platform/DescriptorLimit.hpp"
#include "core/sampling/platform/Pipe.hpp"

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <system_error>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // macOS has no header for it

namespace ostrivane {

namespace {

constexpr int killedBy = 128;

bool isOrdinaryFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// The file that a shell would run for `name`; of several that cannot be run the first. Absent when there is none.
std::optional<std::string> fileOf(const std::string& name) {
    if (name.find('/') != std::string::npos)
        return name;
    const char* chosen = std::getenv("PATH");
    std::string_view folders = chosen ? chosen : "/usr/bin:/bin";
    std::optional<std::string> refused;
    for (bool isLast = name.empty(); !isLast;) {
        const std::size_t end = folders.find(':');
        isLast = end == std::string_view::npos;
        const std::string folder(folders.substr(0, end));
        if (!isLast)
            folders.remove_prefix(end + 1);
        std::string file = (folder.empty() ? "." : folder) + "/" + name;
        if (!isOrdinaryFile(file))
            continue;
        if (::access(file.c_str(), X_OK) == 0)
            return file;
        if (!refused)
            refused = std::move(file);
    }
    return refused;
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// What the new process needs, made before it is there: other threads may have held any lock when it came into being,
/// so it only makes calls that take none.
struct Launch {
    const char* file;
    char* const* arguments;
    char* const* asScript; ///< the shell with the file, for one that no system call can run
    const sigset_t* signals;

    /// Answers only when it failed: why.
    int become() const {
        struct sigaction usual {};
        usual.sa_handler = SIG_DFL;
        // Ignored by this program alone. Those that it handles become usual by themselves, and what whoever started it
        // had it ignore stays ignored.
        for (const int signal : {SIGPIPE, SIGXFSZ})
            ::sigaction(signal, &usual, nullptr);
        for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGCHLD}) {
            struct sigaction now {};
            if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler != SIG_IGN)
                ::sigaction(signal, &usual, nullptr); // before any of them is let through
        }
        ::sigprocmask(SIG_SETMASK, signals, nullptr);
        DescriptorLimit::putBack();
        ::execve(file, arguments, environ);
        const int error = errno;
        if (error == ENOEXEC)
            ::execve(asScript[0], asScript, environ);
        return error;
    }
};

void reap(pid_t pid) {
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

/// An error number that the new process could not become the command with; 0 when it did.
int failureOf(const Pipe& pipe) {
    int error = 0;
    ssize_t count = 0;
    do
        count = ::read(pipe.readEnd.get(), &error, sizeof error);
    while (count < 0 && errno == EINTR);
    return count == sizeof error ? error : 0;
}

ForegroundChild::Failure failure(const std::string& name, int error) {
    const bool isMissing = error == ENOENT || error == ENOTDIR;
    return {isMissing ? ForegroundChild::notFound : ForegroundChild::notExecutable,
            name + ": " + (isMissing ? "command not found" : std::generic_category().message(error))};
}

} // namespace

std::optional<ForegroundChild> ForegroundChild::start(const std::vector<std::string>& words, Failure& failed) {
    const auto file = fileOf(words.front());
    auto pipe = file ? Pipe::open() : std::nullopt;
    if (!pipe) {
        failed = failure(words.front(), file ? errno : ENOENT);
        return std::nullopt;
    }
    std::vector<std::string> arguments = words, script{"/bin/sh", *file};
    script.insert(script.end(), words.begin() + 1, words.end());
    const std::vector<char*> argumentList = pointersTo(arguments), scriptList = pointersTo(script);
    sigset_t all, before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before); // no handler of ours may run in the child
    const Launch launch{file->c_str(), argumentList.data(), scriptList.data(), &before};
    const pid_t pid = ::fork();
    if (pid == 0) {
        const int error = launch.become();
        while (::write(pipe->writeEnd.get(), &error, sizeof error) < 0 && errno == EINTR) {
        }
        ::_exit(notExecutable);
    }
    const int forkError = pid < 0 ? errno : 0;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    pipe->writeEnd.close();
    const int error = forkError != 0 ? forkError : failureOf(*pipe);
    if (error == 0)
        return ForegroundChild(pid);
    if (pid > 0)
        reap(pid);
    failed = failure(words.front(), error);
    return std::nullopt;
}

std::optional<int> ForegroundChild::ended() {
    int status = 0;
    const pid_t found = isGone ? 0 : ::waitpid(process, &status, WNOHANG);
    if (found == 0 || (found < 0 && errno == EINTR))
        return std::nullopt;
    isGone = true;
    if (found < 0) // somebody else waited for it
        return notExecutable;
    return WIFEXITED(status) ? WEXITSTATUS(status) : killedBy + WTERMSIG(status);
}

void ForegroundChild::signal(int number) const {
    if (!isGone)
        ::kill(process, number);
}

} // namespace ostrivane
