#include "core/attribution/ProjectMarkers.hpp"

#include "core/attribution/ProjectFiles.hpp"

namespace ostrivane::ProjectMarkers {

namespace {

template <class Exists>
bool containsOne(std::string_view directory, const Exists& exists) {
    std::string path(directory);
    path += '/';
    const std::size_t length = path.size();
    for (const std::string_view name : names) {
        path.resize(length);
        path += name;
        if (exists(path))
            return true;
    }
    return false;
}

} // namespace

bool contains(std::string_view directory) {
    return containsOne(directory, DiskFiles::exists);
}

bool contains(std::string_view directory, const std::function<bool(const std::string&)>& fileExists) {
    return containsOne(directory, fileExists);
}

} // namespace ostrivane::ProjectMarkers
