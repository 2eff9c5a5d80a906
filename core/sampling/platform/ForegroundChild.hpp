#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace ostrivane {

/// A command that a person runs through this program: it has our terminal, our process group, our standard three
/// descriptors and no other of ours; signals do what they did when this program was started by a shell, and so do the
/// limits of resources. The caller waits for it.
class ForegroundChild {
public:
    /// What a shell answers for a command that it does not find, and for one that it cannot run.
    static constexpr int notFound = 127;
    static constexpr int notExecutable = 126;

    struct Failure {
        int status = notExecutable; ///< for the caller's caller
        std::string reason;         ///< in the user's words
    };

    /// Starts `words`, a command with its arguments; it is looked for along PATH. Absent with why in `failure`.
    static std::optional<ForegroundChild> start(const std::vector<std::string>& words, Failure& failure);

    pid_t pid() const { return process; }

    /// The exit status once it has ended, 128 and the signal's number when a signal ended it; absent while it lives.
    /// From then on nothing is left of it.
    std::optional<int> ended();

    /// Does nothing once it has ended.
    void signal(int number) const;

private:
    explicit ForegroundChild(pid_t pid) : process(pid) {}

    pid_t process;
    bool isGone = false;
};

} // namespace ostrivane
