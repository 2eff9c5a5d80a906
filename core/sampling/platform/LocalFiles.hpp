#pragma once

#include "core/attribution/ProjectFiles.hpp"
#include "core/sampling/platform/Files.hpp"

namespace ostrivane {

/// The files of the machine that the program runs on.
class LocalFiles final : public Files {
public:
    bool exists(const std::string& path) override { return DiskFiles::exists(path); }
    std::vector<std::string> list(const std::string& folder) override { return DiskFiles::list(folder); }
    std::optional<std::string> read(const std::string& path) override { return DiskFiles::read(path); }
};

} // namespace ostrivane
