#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

/// Files that are there whole or not at all.
namespace ostrivane::WholeFile {

/// Makes `content` the content of the file at `path`, on the disk when this returns. Who looks meanwhile sees the old
/// file or the new one, and after a failure the old one is untouched and nothing else left behind. A file that is there
/// keeps its permissions, a new one gets `mode` less the umask; a link stays and what it leads to is replaced; into a
/// device or a pipe the content is written as it stands. Answers what went wrong, in the user's words.
std::optional<std::string> write(const std::string& path, std::string_view content, mode_t mode = 0666);

} // namespace ostrivane::WholeFile
