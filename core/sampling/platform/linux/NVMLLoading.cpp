#include "core/sampling/platform/linux/NVMLLoading.hpp"

#include <dlfcn.h>

namespace ostrivane {

std::optional<NVMLLibrary> loadNVML(const char* file) {
    void* library = ::dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return std::nullopt;
    auto found = NVMLLibrary::find([library](const char* name) { return ::dlsym(library, name); });
    if (!found)
        ::dlclose(library);
    return found;
}

} // namespace ostrivane
