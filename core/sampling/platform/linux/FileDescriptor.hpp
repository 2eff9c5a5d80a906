#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ostrivane {

/// An open file, closed at the end of its owner's life.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : descriptor(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    ~FileDescriptor() { close(); }

    bool isOpen() const { return descriptor >= 0; }
    int get() const { return descriptor; }
    /// Hands the descriptor over: the caller closes it.
    int release() { return std::exchange(descriptor, -1); }
    void close();

    /// The whole text from its beginning, whatever was read before, in `buffer`, which keeps its size for the next
    /// time; absent when any part of it cannot be read. The view points into `buffer`.
    std::optional<std::string_view> readAll(std::string& buffer) const;

private:
    int descriptor = -1;
};

} // namespace ostrivane
