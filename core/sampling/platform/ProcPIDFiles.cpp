#include "core/sampling/platform/ProcPIDFiles.hpp"

#include "core/model/Saturating.hpp"
#include "core/model/Text.hpp"
#include "core/sampling/platform/Scanner.hpp"

#include <algorithm>

namespace ostrivane::ProcPIDFiles {

namespace {

constexpr std::size_t cutNameBytes = 15; // the kernel's field has 16, with the zero

/// The number behind "key:", in a text of one such pair a line.
std::optional<std::uint64_t> valueOf(std::string_view text, std::string_view key) {
    for (Scanner lines(text); !lines.atEnd();) {
        std::string_view line = lines.line();
        if (!line.starts_with(key) || line.size() <= key.size() || line[key.size()] != ':')
            continue;
        line.remove_prefix(key.size() + 1);
        return Scanner(line).number<std::uint64_t>();
    }
    return std::nullopt;
}

std::string_view lastComponent(std::string_view path) {
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0: the whole
}

} // namespace

std::optional<std::uint64_t> privatePages(std::string_view statm) {
    Scanner numbers(Text::trimmed(statm));
    numbers.word(); // the size of the address space
    const auto resident = numbers.number<std::uint64_t>();
    const auto shared = numbers.number<std::uint64_t>();
    return resident && shared ? std::optional(flooredDifference(*resident, *shared)) : std::nullopt;
}

std::optional<Traffic> diskTraffic(std::string_view io) {
    const auto read = valueOf(io, "read_bytes");
    const auto written = valueOf(io, "write_bytes");
    return read && written ? std::optional(Traffic{*read, *written}) : std::nullopt;
}

std::optional<std::uint64_t> swapped(std::string_view status) {
    const auto kibibytes = valueOf(status, "VmSwap");
    return kibibytes ? std::optional(saturatingProduct(*kibibytes, 1024)) : std::nullopt;
}

std::optional<std::vector<std::string>> arguments(std::string_view cmdline, std::string_view path) {
    while (!cmdline.empty() && cmdline.back() == '\0')
        cmdline.remove_suffix(1);
    if (cmdline.empty())
        return std::nullopt;
    std::vector<std::string> found;
    const bool isRewritten = cmdline.find('\0') == std::string_view::npos && !path.empty() &&
                             cmdline.starts_with(path) && cmdline.size() > path.size() && cmdline[path.size()] == ' ';
    if (isRewritten) {
        for (const std::string_view word : Text::words(cmdline))
            found.push_back(Text::repaired(word));
        return found;
    }
    for (;;) {
        const std::size_t end = cmdline.find('\0');
        found.push_back(Text::repaired(cmdline.substr(0, end)));
        if (end == std::string_view::npos)
            return found;
        cmdline.remove_prefix(end + 1);
    }
}

std::optional<std::string_view> variable(std::string_view environ, std::string_view name) {
    while (!environ.empty()) {
        const std::string_view setting = environ.substr(0, environ.find('\0'));
        environ.remove_prefix(std::min(setting.size() + 1, environ.size()));
        if (setting.size() > name.size() && setting.starts_with(name) && setting[name.size()] == '=')
            return setting.substr(name.size() + 1);
    }
    return std::nullopt;
}

std::string_view uncutName(std::string_view name, std::string_view cmdline) {
    if (name.size() != cutNameBytes)
        return name;
    std::string_view first = cmdline.substr(0, cmdline.find('\0'));
    std::string_view candidate = lastComponent(first);
    if (!candidate.starts_with(name)) // a title with arguments in one string
        candidate = lastComponent(first.substr(0, first.find(' ')));
    if (!candidate.starts_with(name))
        return name;
    return candidate.substr(0, candidate.find(' ', name.size())); // blanks before that are the name's own
}

std::string_view withoutDeletedMark(std::string_view link) {
    constexpr std::string_view mark = " (deleted)";
    return link.ends_with(mark) ? link.substr(0, link.size() - mark.size()) : link;
}

} // namespace ostrivane::ProcPIDFiles
