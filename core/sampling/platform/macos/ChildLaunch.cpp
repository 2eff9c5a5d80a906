#include "core/sampling/platform/ChildLaunch.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

namespace ostrivane {

namespace {

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
               ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0) == 0;
    }
    const posix_spawn_file_actions_t* get() const { return &actions; }

private:
    posix_spawn_file_actions_t actions{};
    bool ready;
};

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
        // The last one leaves the child the three descriptors of the file actions, and no other.
        constexpr int flags =
            POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_CLOEXEC_DEFAULT;
        sigset_t all;
        sigset_t none;
        sigfillset(&all);
        sigdelset(&all, SIGKILL);
        sigdelset(&all, SIGSTOP);
        sigemptyset(&none);
        return ready && ::posix_spawnattr_setsigdefault(&attributes, &all) == 0 &&
               ::posix_spawnattr_setsigmask(&attributes, &none) == 0 &&
               ::posix_spawnattr_setflags(&attributes, static_cast<short>(flags)) == 0;
    }
    const posix_spawnattr_t* get() const { return &attributes; }

private:
    posix_spawnattr_t attributes{};
    bool ready;
};

} // namespace

std::optional<pid_t> ChildLaunch::start() const {
    FileActions actions;
    Attributes attributes;
    pid_t pid = 0;
    if (!actions.prepare(output) || !attributes.prepare() ||
        ::posix_spawn(&pid, path, actions.get(), attributes.get(), arguments, environment) != 0)
        return std::nullopt;
    return pid;
}

} // namespace ostrivane
