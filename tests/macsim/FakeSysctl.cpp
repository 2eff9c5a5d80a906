#include "tests/macsim/FakeParts.hpp"
#include "tests/macsim/FakeSystem.hpp"

#include <boost/json.hpp>
#include <sys/sysctl.h>

#include <algorithm>
#include <cerrno>

namespace {

namespace json = boost::json;

std::map<std::string, std::vector<std::byte>> values;

void append(std::vector<std::byte>& bytes, std::int64_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes.push_back(static_cast<std::byte>(number >> (8 * i)));
}

/// Texts with their zero, numbers of 8 bytes or of 4 where the fixture says so, a time value, or plain bytes.
std::vector<std::byte> bytesOf(const json::value& value) {
    std::vector<std::byte> bytes;
    if (const auto* text = value.if_string()) {
        for (const char letter : *text)
            bytes.push_back(static_cast<std::byte>(letter));
        bytes.push_back(std::byte{0});
    } else if (const auto* number = value.if_int64()) {
        append(bytes, *number, 8);
    } else if (const auto* small = value.as_object().if_contains("int32")) {
        append(bytes, small->as_int64(), 4);
    } else if (const auto* seconds = value.as_object().if_contains("sec")) {
        append(bytes, seconds->as_int64(), 8);
        append(bytes, value.at("usec").as_int64(), 8);
    } else {
        bytes = macsim::bytesOfHex(value.at("hex").as_string());
    }
    return bytes;
}

} // namespace

namespace macsim {

std::map<std::string, std::vector<std::byte>>& sysctls() {
    return values;
}

void resetSysctls() {
    values.clear();
    const auto named = fixture("sysctl.json");
    for (const auto& [name, value] : named.as_object())
        values.emplace(name, bytesOf(value));
}

} // namespace macsim

int sysctl(int* name, unsigned parts, void* old, std::size_t* oldLength, void*, std::size_t) {
    if (parts == 4 && name[0] == CTL_KERN && name[1] == KERN_PROC && name[2] == KERN_PROC_PID)
        return macsim::kernelProcessInfo(name[3], old, oldLength);
    if (parts == 3 && name[0] == CTL_KERN && name[1] == KERN_PROCARGS2)
        return macsim::processArguments(name[2], old, oldLength);
    errno = ENOENT;
    return -1;
}

int sysctlbyname(const char* name, void* old, std::size_t* oldLength, void*, std::size_t) {
    const auto found = values.find(name);
    if (found == values.end()) {
        errno = ENOENT;
        return -1;
    }
    const auto& value = found->second;
    if (!old) {
        *oldLength = value.size();
        return 0;
    }
    const std::size_t room = *oldLength;
    *oldLength = std::min(room, value.size());
    std::copy_n(value.begin(), *oldLength, static_cast<std::byte*>(old));
    if (room < value.size()) {
        errno = ENOMEM;
        return -1;
    }
    return 0;
}
