#include "core/attribution/ProjectFiles.hpp"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace ostrivane {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostNames = 10'000;
constexpr std::size_t largestFile = std::size_t{1} << 20;

} // namespace

ProjectFiles ProjectFiles::onDisk() {
    return {DiskFiles::exists, DiskFiles::list, DiskFiles::read};
}

bool DiskFiles::exists(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error);
}

std::vector<std::string> DiskFiles::list(const std::string& directory) {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(directory, error);
    for (; !error && entry != fs::directory_iterator() && names.size() < mostNames; entry.increment(error))
        names.push_back(entry->path().filename().string());
    return names;
}

std::optional<std::string> DiskFiles::read(const std::string& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::string content(largestFile + 1, '\0'); // the size that a file reports may be gone by the time it is read
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.eof() || file.bad())
        return std::nullopt;
    content.resize(static_cast<std::size_t>(file.gcount()));
    return content;
}

} // namespace ostrivane
