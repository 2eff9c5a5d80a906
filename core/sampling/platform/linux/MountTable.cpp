#include "core/sampling/platform/linux/MountTable.hpp"

#include "core/attribution/PathText.hpp"
#include "core/sampling/platform/MountInfo.hpp"

namespace ostrivane {

namespace {

constexpr std::chrono::seconds longestTrusted{5};

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

/// "\040" stands for a blank.
std::string unescaped(std::string_view written) {
    constexpr std::size_t digits = 3;
    std::string out;
    for (std::size_t at = 0; at < written.size(); ++at) {
        const std::string_view code = written.substr(at + 1, digits);
        if (written[at] != '\\' || code.size() < digits || !isOctal(code[0]) || !isOctal(code[1]) ||
            !isOctal(code[2])) {
            out += written[at];
            continue;
        }
        out += static_cast<char>((code[0] - '0') * 64 + (code[1] - '0') * 8 + (code[2] - '0'));
        at += digits;
    }
    return out;
}

} // namespace

bool MountTable::mayHang(std::string_view path) {
    if (const auto now = std::chrono::steady_clock::now(); !readAt || now - *readAt > longestTrusted) {
        refresh();
        readAt = now;
    }
    const Mount* holder = nullptr;
    for (const Mount& mount : mounts)
        if ((mount.point == "/" || path == mount.point || PathText::isBelow(path, mount.point)) &&
            (!holder || mount.point.size() >= holder->point.size()))
            holder = &mount;
    return !holder || holder->mayHang;
}

void MountTable::refresh() {
    mounts.clear();
    const auto text = root.read("proc/self/mountinfo");
    if (!text)
        return;
    for (const MountInfo& mount : MountInfo::parse(*text))
        mounts.push_back({unescaped(mount.point), mount.mayHang()});
}

} // namespace ostrivane
