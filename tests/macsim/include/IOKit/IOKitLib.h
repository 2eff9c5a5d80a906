// What the readers call of the I/O registry, under the system's names. Only for the build of the readers over the
// fakes.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <mach/mach.h>

using io_object_t = mach_port_t;
using io_iterator_t = io_object_t;
using io_service_t = io_object_t;
using io_registry_entry_t = io_object_t;
using io_name_t = char[128];
using io_string_t = char[512];
using IOOptionBits = std::uint32_t;

inline constexpr mach_port_t kIOMainPortDefault = 0;

extern "C" {
CFMutableDictionaryRef IOServiceMatching(const char* className);
kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching, io_iterator_t* existing);
io_object_t IOIteratorNext(io_iterator_t iterator);
kern_return_t IOObjectRelease(io_object_t object);
kern_return_t IOObjectGetClass(io_object_t object, io_name_t className);
kern_return_t IORegistryEntryGetChildIterator(io_registry_entry_t entry, const io_name_t plane,
                                              io_iterator_t* iterator);
io_registry_entry_t IORegistryEntryFromPath(mach_port_t mainPort, const io_string_t path);
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key, CFAllocatorRef allocator,
                                          IOOptionBits options);
kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);
}
