#include "core/sampling/platform/macos/IORegistry.hpp"

#include "core/sampling/platform/KernelRecords.hpp"
#include "core/sampling/platform/macos/CFValue.hpp"

#include <algorithm>

namespace ostrivane::IORegistry {

namespace {

/// Zero ends the iteration; it also comes when the registry changes meanwhile, and the list is short that once.
std::vector<IOHandle> entries(const IOHandle& iterator) {
    std::vector<IOHandle> found;
    if (!iterator) // how the system says that nothing matched
        return found;
    while (IOHandle next{IOIteratorNext(iterator.get())})
        found.push_back(std::move(next));
    return found;
}

} // namespace

std::vector<IOHandle> services(const char* className) {
    const CFMutableDictionaryRef matching = IOServiceMatching(className);
    if (!matching)
        return {};
    io_iterator_t iterator = 0;
    // Takes the dictionary's reference, also when it fails.
    if (IOServiceGetMatchingServices(kIOMainPortDefault, matching, &iterator) != KERN_SUCCESS)
        return {};
    return entries(IOHandle(iterator));
}

std::vector<IOHandle> children(const IOHandle& entry) {
    io_iterator_t iterator = 0;
    if (IORegistryEntryGetChildIterator(entry.get(), "IOService", &iterator) != KERN_SUCCESS)
        return {};
    return entries(IOHandle(iterator));
}

std::optional<std::string> className(const IOHandle& entry) {
    io_name_t name{};
    if (IOObjectGetClass(entry.get(), name) != KERN_SUCCESS)
        return std::nullopt;
    return std::string(name, std::find(name, name + sizeof(name), '\0'));
}

CFHandle<CFTypeRef> properties(const IOHandle& entry) {
    CFMutableDictionaryRef all = nullptr;
    if (IORegistryEntryCreateCFProperties(entry.get(), &all, kCFAllocatorDefault, 0) != KERN_SUCCESS)
        return {};
    return CFHandle<CFTypeRef>(all);
}

CFHandle<CFTypeRef> property(const IOHandle& entry, std::string_view key) {
    const auto name = CFValue::newString(key);
    if (!name)
        return {};
    return CFHandle<CFTypeRef>(IORegistryEntryCreateCFProperty(entry.get(), name.get(), kCFAllocatorDefault, 0));
}

std::optional<std::string> productName() {
    const IOHandle product(IORegistryEntryFromPath(kIOMainPortDefault, "IODeviceTree:/product"));
    if (!product)
        return std::nullopt;
    const auto value = property(product, "product-name");
    const auto bytes = CFValue::data(value.get());
    return bytes ? KernelRecords::text(*bytes) : std::nullopt;
}

} // namespace ostrivane::IORegistry
