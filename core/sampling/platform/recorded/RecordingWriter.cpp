#include "core/sampling/platform/recorded/RecordingWriter.hpp"

#include "core/model/JSON.hpp"

#include <fmt/format.h>

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivane {

namespace {

std::string reason(int error) {
    return std::generic_category().message(error);
}

bool isSpecialFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

} // namespace

RecordingWriter::~RecordingWriter() {
    if (descriptor >= 0)
        ::close(descriptor);
}

std::optional<std::string> RecordingWriter::open(const RecordingHeader& header, bool replace) {
    constexpr mode_t ownerOnly = 0600;
    // A device or a pipe may be there already; a file must not.
    const bool exclusive = !replace && !isSpecialFile(path);
    descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | (exclusive ? O_EXCL : O_TRUNC), ownerOnly);
    if (descriptor < 0 && errno == EEXIST)
        return fmt::format("{}: the file exists already", path);
    if (descriptor < 0)
        return fmt::format("{}: {}", path, reason(errno));
    struct stat status {};
    isRegular = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (isRegular && ::fchmod(descriptor, ownerOnly) != 0)
        return fmt::format("{}: {}", path, reason(errno));
    return append(JSON::text(header));
}

std::optional<std::string> RecordingWriter::append(std::string_view line) {
    std::string text(line);
    text += '\n';
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t written = ::write(descriptor, text.data() + done, text.size() - done);
        if (written > 0) {
            done += static_cast<std::size_t>(written);
            continue;
        }
        if (written < 0 && errno == EINTR)
            continue;
        const int error = written < 0 ? errno : ENOSPC;
        // Whether taking back works or not, a reader copes with half a line at the end.
        if (::ftruncate(descriptor, whole) == 0)
            ::lseek(descriptor, whole, SEEK_SET);
        return fmt::format("{}: {}", path, reason(error));
    }
    whole += static_cast<std::int64_t>(text.size());
    return std::nullopt;
}

} // namespace ostrivane
