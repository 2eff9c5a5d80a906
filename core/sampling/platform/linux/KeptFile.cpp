#include "core/sampling/platform/linux/KeptFile.hpp"

#include <cerrno>
#include <utility>

namespace ostrivane {

KeptFile::KeptFile(const RootFolder& folder, std::string relativePath, Presence whetherExpected)
    : root(&folder), path(std::move(relativePath)), presence(whetherExpected) {}

std::optional<std::string_view> KeptFile::read() {
    if (resting > 0) {
        --resting;
        return std::nullopt;
    }
    if (file.isOpen())
        if (const auto text = file.readAll(buffer))
            return text;
    file = root->open(path);
    const bool opened = file.isOpen();
    if (opened)
        if (const auto text = file.readAll(buffer))
            return text;
    // A file that is there may fail once. One that the kernel was built with and told to leave off says so every time.
    const bool isLeftOff = opened && errno == EOPNOTSUPP;
    file.close();
    if (presence == Presence::optional && (!opened || isLeftOff))
        resting = restingReadings;
    return std::nullopt;
}

} // namespace ostrivane
