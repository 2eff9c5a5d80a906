#include "core/sampling/platform/MountInfo.hpp"

#include "core/sampling/platform/Scanner.hpp"

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> several) {
    return std::ranges::find(several, text) != several.end();
}

/// What stands behind "name=" in a list separated by commas; of two, the last.
std::string_view option(std::string_view options, std::string_view name) {
    std::string_view found;
    while (!options.empty()) {
        const std::string_view one = options.substr(0, options.find(','));
        options.remove_prefix(std::min(one.size() + 1, options.size()));
        if (one.size() > name.size() && one.starts_with(name) && one[name.size()] == '=')
            found = one.substr(name.size() + 1);
    }
    return found;
}

} // namespace

std::vector<MountInfo> MountInfo::parse(std::string_view text) {
    std::vector<MountInfo> mounts;
    for (Scanner lines(text); !lines.atEnd();) {
        Scanner words(lines.line());
        for (int field = 0; field < 4; ++field) // ids, device, and the folder within it
            words.word();
        MountInfo mount;
        mount.point = words.word();
        std::string_view word = words.word(); // options of the mount
        while (!word.empty() && word != "-")  // any number of optional fields
            word = words.word();
        mount.type = words.word();
        words.word(); // the source
        mount.options = words.word();
        if (!mount.options.empty())
            mounts.push_back(mount);
    }
    return mounts;
}

const MountInfo* MountInfo::seenAt(std::string_view point, const std::vector<MountInfo>& mounts) {
    const auto found =
        std::find_if(mounts.rbegin(), mounts.rend(), [point](const MountInfo& mount) { return mount.point == point; });
    return found == mounts.rend() ? nullptr : &*found;
}

bool MountInfo::mayHang() const {
    return type.starts_with("fuse") || type.starts_with("nfs") ||
           isOneOf(type, {"cifs", "smb3", "9p", "ceph", "afs", "glusterfs", "autofs"});
}

bool MountInfo::hidesProcesses(const std::vector<MountInfo>& mounts, const std::vector<std::uint32_t>& groups) {
    const MountInfo* proc = seenAt("/proc", mounts);
    if (!proc || proc->type != "proc")
        return false;
    const std::string_view hidden = option(proc->options, "hidepid");
    if (isOneOf(hidden, {"4", "ptraceable"})) // its own way, which knows of no group
        return true;
    const auto spared = Text::number<std::uint32_t>(option(proc->options, "gid")).value_or(0); // unnamed it is root's
    return isOneOf(hidden, {"1", "noaccess", "2", "invisible"}) && std::ranges::find(groups, spared) == groups.end();
}

} // namespace ostrivane
