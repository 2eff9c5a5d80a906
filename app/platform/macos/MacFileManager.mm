#include "app/window/FileManager.hpp"

#import <AppKit/AppKit.h>

namespace ostrivane {

namespace {

/// The Finder.
class MacFileManager final : public FileManager {
public:
    void reveal(const std::string& path, std::function<void()> failed) override {
        NSString* const file = [NSFileManager.defaultManager stringWithFileSystemRepresentation:path.data()
                                                                                         length:path.size()];
        if (!file || ![NSWorkspace.sharedWorkspace selectFile:file inFileViewerRootedAtPath:@""])
            failed();
    }
};

} // namespace

std::unique_ptr<FileManager> nativeFileManager() {
    return std::make_unique<MacFileManager>();
}

} // namespace ostrivane
