#pragma once

#include <memory>
#include <vector>

#include <cstdint>

#include <dirent.h>

namespace ostrivane {

/// A folder that stays open and is listed again and again.
class FolderStream {
public:
    FolderStream() = default;
    /// Takes the open folder over.
    explicit FolderStream(int descriptor) : folder(descriptor < 0 ? nullptr : ::fdopendir(descriptor)) {}

    bool isOpen() const { return folder != nullptr; }
    int descriptor() const { return ::dirfd(folder.get()); }

    /// Calls `take` with each name, from the first on.
    template <class Take>
    void each(Take take) {
        if (!folder)
            return;
        ::rewinddir(folder.get());
        while (const dirent* entry = ::readdir(folder.get()))
            take(entry->d_name);
    }

private:
    struct Close {
        void operator()(DIR* opened) const { ::closedir(opened); }
    };
    std::unique_ptr<DIR, Close> folder;
};

} // namespace ostrivane
