#pragma once

#include "tests/TemporaryFolder.hpp"

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string_view>

namespace ostrivane {

/// A file or folder under tests/fixtures.
inline std::filesystem::path fixture(std::string_view name) {
    return std::filesystem::path(OSTRIVANE_FIXTURES) / name;
}

/// A folder for one test that holds a machine's files. Gone with the object.
class TemporaryTree {
public:
    explicit TemporaryTree(std::initializer_list<std::filesystem::path> sources = {}) {
        for (const std::filesystem::path& source : sources)
            layOver(source);
    }

    const std::filesystem::path& path() const { return folder.path(); }

    /// Copies the inside of `source` into the tree; links stay links, files that were there are written anew.
    void layOver(const std::filesystem::path& source) const {
        using std::filesystem::copy_options;
        std::filesystem::copy(source, path(),
                              copy_options::recursive | copy_options::copy_symlinks | copy_options::overwrite_existing);
    }

    /// Writes a file, and the folders it lies in.
    void write(const std::filesystem::path& name, std::string_view text) const {
        std::filesystem::create_directories((path() / name).parent_path());
        std::ofstream(path() / name, std::ios::binary) << text;
    }

    void remove(const std::filesystem::path& name) const { std::filesystem::remove_all(path() / name); }

private:
    TemporaryFolder folder;
};

/// A copy of a fixture tree that a test may change.
inline TemporaryTree copied(std::string_view tree) {
    return TemporaryTree({fixture(tree)});
}

/// The same at its next reading: with the files of its folder "later" laid over.
inline TemporaryTree overlaid(std::string_view tree) {
    return TemporaryTree({fixture(tree), fixture(tree) / "later"});
}

} // namespace ostrivane
