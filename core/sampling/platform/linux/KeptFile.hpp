#pragma once

#include "core/sampling/platform/linux/FileDescriptor.hpp"
#include "core/sampling/platform/linux/RootFolder.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace ostrivane {

/// A file that is read again and again. It stays open, which halves the cost of a reading, and is opened anew when a
/// reading fails: a device may have gone and come back under the same name.
class KeptFile {
public:
    enum class Presence {
        expected, ///< tried at every reading
        optional, ///< once it could not be opened it rests for `restingReadings`: most machines will never have it, but
                  ///< a module can be loaded later, and a try that fails costs as much as reading a small file
    };
    static constexpr int restingReadings = 30;

    /// `folder` must outlive the file.
    KeptFile(const RootFolder& folder, std::string path, Presence presence = Presence::expected);

    /// The whole text as it is now. The view is good until the next reading.
    std::optional<std::string_view> read();

private:
    const RootFolder* root;
    std::string path;
    Presence presence;
    FileDescriptor file;
    std::string buffer;
    int resting = 0;
};

} // namespace ostrivane
