#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ostrivane {

/// One line of a mountinfo file. The views point into the text.
struct MountInfo {
    std::string_view point; ///< as it is written: a blank stands as "\040"
    std::string_view type;
    std::string_view options; ///< of the file system, separated by commas

    /// In the order of the text: of two at one place the later one is seen. Lines that are not whole are left out.
    static std::vector<MountInfo> parse(std::string_view text);

    /// What is seen at `point`; null when nothing is mounted there.
    static const MountInfo* seenAt(std::string_view point, const std::vector<MountInfo>& mounts);

    /// It is answered by a program or over a network, and may never answer.
    bool mayHang() const;

    /// /proc keeps other users' processes, or much of what they show, from a user who is in `groups` and no more than
    /// that (hidepid).
    static bool hidesProcesses(const std::vector<MountInfo>& mounts, const std::vector<std::uint32_t>& groups);
};

} // namespace ostrivane
