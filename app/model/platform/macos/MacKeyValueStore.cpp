#include "app/model/platform/macos/MacKeyValueStore.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/macos/CFValue.hpp"

#include <cmath>
#include <utility>

namespace ostrivane {

namespace {

CFHandle<CFNumberRef> newNumber(CFNumberType type, const void* value) {
    return CFHandle<CFNumberRef>(CFNumberCreate(kCFAllocatorDefault, type, value));
}

bool isSame(CFTypeRef one, CFTypeRef other) {
    return one && other ? CFEqual(one, other) != 0 : one == other;
}

} // namespace

MacKeyValueStore::MacKeyValueStore(std::string domainName)
    : name(std::move(domainName)), domain(CFValue::newString(name)), seen(allIn(domain.get())) {}

MacKeyValueStore::Values MacKeyValueStore::allIn(CFStringRef domain) {
    return std::make_shared<CFHandle<CFDictionaryRef>>(
        CFPreferencesCopyMultiple(nullptr, domain, kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
}

CFHandle<CFPropertyListRef> MacKeyValueStore::value(std::string_view key) const {
    const auto keyText = CFValue::newString(key);
    if (!keyText)
        return {};
    return CFHandle<CFPropertyListRef>(
        CFPreferencesCopyValue(keyText.get(), domain.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
}

std::optional<bool> MacKeyValueStore::boolean(std::string_view key) const {
    return CFValue::boolean(value(key).get());
}

std::optional<double> MacKeyValueStore::number(std::string_view key) const {
    return CFValue::number(value(key).get());
}

std::optional<std::int64_t> MacKeyValueStore::integer(std::string_view key) const {
    return CFValue::integer(value(key).get());
}

std::optional<std::string> MacKeyValueStore::text(std::string_view key) const {
    return CFValue::string(value(key).get());
}

std::optional<std::string> MacKeyValueStore::json(std::string_view key) const {
    const auto held = value(key); // owns the bytes
    const auto bytes = CFValue::data(held.get());
    return bytes ? std::optional(std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size()))
                 : std::nullopt;
}

void MacKeyValueStore::setBoolean(std::string_view key, bool value) {
    put(key, value ? kCFBooleanTrue : kCFBooleanFalse);
}

void MacKeyValueStore::setNumber(std::string_view key, double value) {
    if (std::isfinite(value))
        put(key, newNumber(kCFNumberDoubleType, &value).get());
}

void MacKeyValueStore::setInteger(std::string_view key, std::int64_t value) {
    put(key, newNumber(kCFNumberSInt64Type, &value).get());
}

void MacKeyValueStore::setText(std::string_view key, std::string_view value) {
    put(key, CFValue::newString(Text::repaired(value)).get());
}

void MacKeyValueStore::setJSON(std::string_view key, std::string_view document) {
    const CFHandle<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(document.data()),
                                                static_cast<CFIndex>(document.size())));
    put(key, data.get());
}

void MacKeyValueStore::put(std::string_view key, CFPropertyListRef value) {
    const auto keyText = CFValue::newString(key);
    if (!keyText || !value) // none would remove the key
        return;
    CFPreferencesSetValue(keyText.get(), value, domain.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    keepChanges();
}

void MacKeyValueStore::remove(std::string_view key) {
    const auto keyText = CFValue::newString(key);
    if (!keyText)
        return;
    CFPreferencesSetValue(keyText.get(), nullptr, domain.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
    keepChanges();
}

void MacKeyValueStore::together(const std::function<void()>& changes) {
    const bool isWithin = std::exchange(isGrouping, true);
    changes();
    isGrouping = isWithin;
    keepChanges();
}

void MacKeyValueStore::keepChanges() {
    if (isGrouping)
        return;
    unkept.reset();
    if (!CFPreferencesAppSynchronize(domain.get()))
        unkept = place() + ": the system could not write the preferences";
}

std::vector<std::string> MacKeyValueStore::keys() const {
    std::vector<std::string> names;
    const CFHandle<CFArrayRef> list(
        CFPreferencesCopyKeyList(domain.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
    for (const CFTypeRef key : CFValue::elements(list.get()))
        if (auto text = CFValue::string(key))
            names.push_back(*std::move(text));
    return names;
}

void MacKeyValueStore::reload() {
    CFPreferencesAppSynchronize(domain.get());
    seen = allIn(domain.get());
}

std::function<bool()> MacKeyValueStore::watch() const {
    // The system has no count of changes to ask for, and its notices want a run loop: all values are compared, which
    // are some twenty and lie in memory that the system shares with the program.
    const auto watched = std::make_shared<CFHandle<CFStringRef>>(CFValue::newString(name));
    return [watched, last = seen]() mutable {
        CFPreferencesAppSynchronize(watched->get());
        const Values before = std::exchange(last, allIn(watched->get()));
        return !isSame(before->get(), last->get());
    };
}

std::string MacKeyValueStore::place() const {
    return "~/Library/Preferences/" + name + ".plist";
}

} // namespace ostrivane
