#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <boost/json/value.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

/// What the fakes share between them.
namespace macsim {

/// A Core Foundation object made from what a fixture says; {"$data": "00ff"} is binary data. One reference, the
/// caller's.
CFTypeRef newObject(const boost::json::value& value);
/// The text of a string object; empty for a dead reference or another type.
std::string textOf(CFTypeRef object);

/// What `newObject` would make it of.
boost::json::value jsonOf(CFTypeRef object);

void resetBundles();
void resetPreferences();
void resetRegistry();
void resetMach();
void resetSysctls();
void resetProcesses();

/// Answers of `sysctl` about one process.
int kernelProcessInfo(std::int32_t pid, void* old, std::size_t* oldLength);
int processArguments(std::int32_t pid, void* old, std::size_t* oldLength);

void forgetObjects();
void forgetIOObjects();
void forgetMach();
void forgetQueues();

std::size_t liveObjects();
std::size_t liveIOObjects();
std::size_t liveVMBuffers();
std::size_t liveHostPorts();
std::size_t liveQueues();

} // namespace macsim
