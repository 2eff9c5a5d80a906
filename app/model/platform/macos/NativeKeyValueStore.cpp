#include "app/model/FileKeyValueStore.hpp"
#include "app/model/platform/macos/MacKeyValueStore.hpp"
#include "core/sampling/platform/UserFolders.hpp"

namespace ostrivane {

std::unique_ptr<KeyValueStore> nativeKeyValueStore() {
    if (UserFolders::isConfigDirectoryChosen()) // which the system's preferences know nothing of
        return std::make_unique<FileKeyValueStore>(UserFolders::configDirectory());
    return std::make_unique<MacKeyValueStore>("Ostrivane");
}

} // namespace ostrivane
