#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>
#include <termios.h>

namespace ostrivane {

/// What became of a run of `ostrivanectl`.
struct Finished {
    int status = -1; ///< exit status, or 128 and the signal that ended it
    std::string out;
    std::string err;
};

/// Runs `ostrivanectl` to its end, without a terminal. Standard output goes to `output` when that is named.
Finished runProgram(const std::vector<std::string>& arguments, const std::string& output = {});

/// `ostrivanectl` on a terminal of its own.
class TerminalRun {
public:
    TerminalRun(const std::vector<std::string>& arguments, int width, int height,
                const std::vector<std::string>& environment = {});
    ~TerminalRun();
    TerminalRun(const TerminalRun&) = delete;
    TerminalRun& operator=(const TerminalRun&) = delete;

    /// Reads until `text` has been written to the terminal; false when the program ends or 20 s pass before.
    bool sees(std::string_view text);
    /// Reads until nothing more comes for a moment.
    void readUntilQuiet();
    void type(std::string_view keys);
    void resize(int width, int height);
    void signal(int number);
    /// Waits for the end; the exit status as in `Finished`.
    int wait();
    /// The terminal's settings and whether it is in non-blocking mode: what a program must give back as it found it.
    termios settings() const;
    bool isNonBlocking() const;

    std::string written; ///< all that was written to the terminal
    termios before{};    ///< the settings at the start

private:
    bool read();

    int control = -1;
    int kept = -1; ///< keeps the terminal's far side open, so that its settings can be looked at afterwards
    pid_t process = -1;
    int status = -1;
};

} // namespace ostrivane
