#include "core/sampling/platform/linux/FileDescriptor.hpp"

#include <cerrno>

#include <unistd.h>

namespace ostrivane {

namespace {

constexpr std::size_t firstSize = 4096;
constexpr std::size_t largestSize = std::size_t(64) << 20; // no file that is read whole comes near; some never end

} // namespace

void FileDescriptor::close() {
    if (isOpen())
        ::close(release());
}

std::optional<std::string_view> FileDescriptor::readAll(std::string& buffer) const {
    std::size_t size = 0;
    while (true) {
        if (size == buffer.size()) {
            if (size >= largestSize)
                return std::nullopt;
            buffer.resize(size == 0 ? firstSize : size * 2);
        }
        // Only an empty read is the end: the kernel hands out long files page by page, and says nothing of their size.
        const ssize_t count = ::pread(descriptor, buffer.data() + size, buffer.size() - size, static_cast<off_t>(size));
        if (count == 0)
            return std::string_view(buffer).substr(0, size);
        if (count > 0)
            size += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return std::nullopt;
    }
}

} // namespace ostrivane
