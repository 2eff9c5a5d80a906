#include "tests/macsim/FakeParts.hpp"
#include "tests/macsim/FakeSystem.hpp"

#include <IOKit/IOKitLib.h>
#include <boost/json.hpp>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace json = boost::json;

/// An entry, or an iterator with the entries still to come (the next one last). Each is handed out under a number of
/// its own, so that one released twice or used afterwards shows.
struct Handle {
    const json::object* entry = nullptr;
    std::vector<const json::object*> rest;
};

json::object tree;
std::map<io_object_t, Handle> live;
io_object_t lastNumber = 0;

io_object_t handOut(Handle handle) {
    live.emplace(++lastNumber, std::move(handle));
    return lastNumber;
}

io_iterator_t iteratorOver(std::vector<const json::object*> entries) {
    std::reverse(entries.begin(), entries.end());
    return handOut({nullptr, std::move(entries)});
}

Handle* alive(io_object_t object, const char* call) {
    const auto found = live.find(object);
    if (found != live.end())
        return &found->second;
    macsim::fault(std::string(call) + " of " + (object == 0 ? "0" : "an object that is gone"));
    return nullptr;
}

const json::object* entryOf(io_registry_entry_t object, const char* call) {
    const Handle* handle = alive(object, call);
    return handle ? handle->entry : nullptr;
}

/// By its class, or by one that this is a subclass of.
bool isOf(const json::object& entry, std::string_view className) {
    if (entry.at("class").as_string() == className)
        return true;
    const auto* bases = entry.if_contains("matches");
    return bases && std::ranges::any_of(bases->as_array(),
                                        [className](const json::value& base) { return base.as_string() == className; });
}

const json::object& propertiesOf(const json::object& entry) {
    static const json::object none;
    const auto* properties = entry.if_contains("properties");
    return properties ? properties->as_object() : none;
}

} // namespace

namespace macsim {

json::object& registry() {
    return tree;
}

void resetRegistry() {
    tree = fixture("ioregistry.json").as_object();
}

void forgetIOObjects() {
    live.clear();
}

std::size_t liveIOObjects() {
    return live.size();
}

} // namespace macsim

CFMutableDictionaryRef IOServiceMatching(const char* className) {
    if (macsim::refused("IOServiceMatching"))
        return nullptr;
    const CFTypeRef matching = macsim::newObject(json::object{{"IOProviderClass", className}});
    return static_cast<CFMutableDictionaryRef>(const_cast<void*>(matching));
}

kern_return_t IOServiceGetMatchingServices(mach_port_t, CFDictionaryRef matching, io_iterator_t* existing) {
    if (!matching) {
        macsim::fault("IOServiceGetMatchingServices of NULL");
        return KERN_FAILURE;
    }
    const CFTypeRef key = macsim::newObject("IOProviderClass");
    const std::string className = macsim::textOf(CFDictionaryGetValue(matching, key));
    CFRelease(key);
    CFRelease(matching); // consumed, also when this fails
    if (macsim::refused("IOServiceGetMatchingServices"))
        return KERN_FAILURE;
    std::vector<const json::object*> matches;
    for (const json::value& service : tree.at("services").as_array())
        if (isOf(service.as_object(), className))
            matches.push_back(&service.as_object());
    *existing = matches.empty() ? 0 : iteratorOver(std::move(matches));
    return KERN_SUCCESS;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    Handle* handle = alive(iterator, "IOIteratorNext");
    if (!handle || handle->rest.empty())
        return 0;
    const json::object* next = handle->rest.back();
    handle->rest.pop_back();
    return handOut({next, {}});
}

kern_return_t IOObjectRelease(io_object_t object) {
    if (!alive(object, "IOObjectRelease"))
        return KERN_FAILURE;
    live.erase(object);
    return KERN_SUCCESS;
}

kern_return_t IOObjectGetClass(io_object_t object, io_name_t className) {
    const json::object* entry = entryOf(object, "IOObjectGetClass");
    if (!entry || macsim::refused("IOObjectGetClass"))
        return KERN_FAILURE;
    std::strncpy(className, entry->at("class").as_string().c_str(), sizeof(io_name_t) - 1);
    return KERN_SUCCESS;
}

kern_return_t IORegistryEntryGetChildIterator(io_registry_entry_t object, const io_name_t plane,
                                              io_iterator_t* iterator) {
    const json::object* entry = entryOf(object, "IORegistryEntryGetChildIterator");
    if (!entry || std::strcmp(plane, "IOService") != 0 || macsim::refused("IORegistryEntryGetChildIterator"))
        return KERN_FAILURE;
    std::vector<const json::object*> found;
    if (const auto* children = entry->if_contains("children"))
        for (const json::value& child : children->as_array())
            found.push_back(&child.as_object());
    *iterator = iteratorOver(std::move(found));
    return KERN_SUCCESS;
}

io_registry_entry_t IORegistryEntryFromPath(mach_port_t, const io_string_t path) {
    const auto* entry = tree.at("paths").as_object().if_contains(path);
    return entry ? handOut({&entry->as_object(), {}}) : 0;
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t object, CFStringRef key, CFAllocatorRef, IOOptionBits) {
    const std::string name = macsim::textOf(key);
    const json::object* entry = entryOf(object, "IORegistryEntryCreateCFProperty");
    if (!entry || macsim::refused("IORegistryEntryCreateCFProperty"))
        return nullptr;
    const auto* value = propertiesOf(*entry).if_contains(name);
    return value ? macsim::newObject(*value) : nullptr;
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t object, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef, IOOptionBits) {
    const json::object* entry = entryOf(object, "IORegistryEntryCreateCFProperties");
    if (!entry || macsim::refused("IORegistryEntryCreateCFProperties"))
        return KERN_FAILURE;
    *properties = static_cast<CFMutableDictionaryRef>(const_cast<void*>(macsim::newObject(propertiesOf(*entry))));
    return KERN_SUCCESS;
}
