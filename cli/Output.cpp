#include "cli/Output.hpp"

#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace ostrivane::cli {

Written writeOut(std::string_view text) {
    const bool whole = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (whole)
        return Written::whole;
    if (errno == EPIPE)
        return Written::closed;
    writeError("standard output: " + std::generic_category().message(errno));
    return Written::failed;
}

ExitStatus statusAfter(Written written) {
    return written == Written::failed ? failed : succeeded;
}

std::optional<int> terminalWidth() {
    return terminalWidth(STDOUT_FILENO);
}

std::optional<int> terminalWidth(int descriptor) {
    winsize window{};
    if (::ioctl(descriptor, TIOCGWINSZ, &window) != 0 || window.ws_col == 0)
        return std::nullopt;
    return window.ws_col;
}

void writeError(std::string_view message) {
    writeNote(fmt::format("ostrivanectl: {}", Text::visible(message)));
}

void writeNote(std::string_view line) {
    // Nobody may be there to read: the terminal is closed, or standard error is. That changes no outcome.
    const std::string text = std::string(line) + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace ostrivane::cli
