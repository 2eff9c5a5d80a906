#include "app/model/FileKeyValueStore.hpp"
#include "core/sampling/platform/UserFolders.hpp"

namespace ostrivane {

std::unique_ptr<KeyValueStore> nativeKeyValueStore() {
    return std::make_unique<FileKeyValueStore>(UserFolders::configDirectory());
}

} // namespace ostrivane
