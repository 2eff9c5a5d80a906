#include "core/sampling/platform/UserNames.hpp"

#include "core/model/Text.hpp"

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace ostrivane {

namespace {

constexpr std::size_t usualEntry = 1024;                   ///< bytes of one entry of the user database
constexpr std::size_t longestEntry = std::size_t(1) << 20; ///< bytes; a directory service may send long ones

struct UserEntry {
    std::string name;
    std::string home;
};

std::string textOf(const char* text) {
    return text ? text : "";
}

std::optional<UserEntry> userEntry(std::uint32_t uid) {
    for (std::size_t size = usualEntry; size <= longestEntry; size *= 2) {
        std::vector<char> text(size);
        passwd entry{};
        passwd* found = nullptr;
        int error;
        do
            error = ::getpwuid_r(uid, &entry, text.data(), text.size(), &found);
        while (error == EINTR);
        if (error == 0 && found)
            return UserEntry{textOf(entry.pw_name), textOf(entry.pw_dir)};
        if (error != ERANGE)
            break;
    }
    return std::nullopt;
}

bool isFullPath(std::string_view path) {
    return path.starts_with('/');
}

} // namespace

const std::string& UserNames::of(std::uint32_t uid) {
    if (const auto cached = known.find(uid); cached != known.end())
        return cached->second;
    const auto entry = userEntry(uid);
    const bool isNamed = entry && !entry->name.empty();
    return known.emplace(uid, isNamed ? Text::repaired(entry->name) : std::to_string(uid)).first->second;
}

std::string homeFolder() {
    if (std::string told = textOf(std::getenv("HOME")); isFullPath(told))
        return told;
    const auto entry = userEntry(::getuid());
    return entry && isFullPath(entry->home) ? entry->home : std::string();
}

} // namespace ostrivane
