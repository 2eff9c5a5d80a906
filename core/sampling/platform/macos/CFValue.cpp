#include "core/sampling/platform/macos/CFValue.hpp"

#include <cmath>
#include <cstring>

namespace ostrivane::CFValue {

namespace {

bool hasType(CFTypeRef value, CFTypeID type) {
    return value && CFGetTypeID(value) == type;
}

} // namespace

CFHandle<CFStringRef> newString(std::string_view utf8) {
    return CFHandle<CFStringRef>(CFStringCreateWithBytes(kCFAllocatorDefault,
                                                         reinterpret_cast<const UInt8*>(utf8.data()),
                                                         static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, 0));
}

std::optional<std::string> string(CFTypeRef value) {
    if (!hasType(value, CFStringGetTypeID()))
        return std::nullopt;
    const auto text = static_cast<CFStringRef>(value);
    const CFIndex room = CFStringGetMaximumSizeForEncoding(CFStringGetLength(text), kCFStringEncodingUTF8) + 1;
    if (room <= 0)
        return std::nullopt;
    std::string utf8(static_cast<std::size_t>(room), '\0');
    if (!CFStringGetCString(text, utf8.data(), room, kCFStringEncodingUTF8))
        return std::nullopt;
    utf8.resize(std::strlen(utf8.c_str()));
    return utf8;
}

std::optional<bool> boolean(CFTypeRef value) {
    if (!hasType(value, CFBooleanGetTypeID()))
        return std::nullopt;
    return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
}

std::optional<std::int64_t> integer(CFTypeRef value) {
    if (!hasType(value, CFNumberGetTypeID()))
        return std::nullopt;
    std::int64_t number = 0;
    // Stores something even when it does not fit, and says so by its result alone.
    if (!CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberSInt64Type, &number))
        return std::nullopt;
    return number;
}

std::optional<double> number(CFTypeRef value) {
    if (!hasType(value, CFNumberGetTypeID()))
        return std::nullopt;
    double number = 0;
    // The result tells of digits that were lost, which is no harm here.
    CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberDoubleType, &number);
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<std::span<const std::byte>> data(CFTypeRef value) {
    if (!hasType(value, CFDataGetTypeID()))
        return std::nullopt;
    const auto bytes = static_cast<CFDataRef>(value);
    return std::as_bytes(std::span(CFDataGetBytePtr(bytes), static_cast<std::size_t>(CFDataGetLength(bytes))));
}

CFTypeRef member(CFTypeRef dictionary, std::string_view key) {
    if (!isDictionary(dictionary))
        return nullptr;
    const auto name = newString(key);
    return name ? CFDictionaryGetValue(static_cast<CFDictionaryRef>(dictionary), name.get()) : nullptr;
}

bool isDictionary(CFTypeRef value) {
    return hasType(value, CFDictionaryGetTypeID());
}

std::vector<CFTypeRef> elements(CFTypeRef list) {
    std::vector<CFTypeRef> found;
    if (!hasType(list, CFArrayGetTypeID()))
        return found;
    const auto array = static_cast<CFArrayRef>(list);
    const CFIndex count = CFArrayGetCount(array);
    for (CFIndex i = 0; i < count; ++i)
        found.push_back(CFArrayGetValueAtIndex(array, i));
    return found;
}

} // namespace ostrivane::CFValue
