#pragma once

#include <functional>
#include <memory>
#include <string>

namespace ostrivane {

/// The desktop's file manager. Belongs to the main thread.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// Shows the folder that holds a file, with the file chosen where the desktop can do that.
    /// @param failed  called, some time later at that, when nothing shows it
    virtual void reveal(const std::string& path, std::function<void()> failed) = 0;
};

std::unique_ptr<FileManager> nativeFileManager();

} // namespace ostrivane
