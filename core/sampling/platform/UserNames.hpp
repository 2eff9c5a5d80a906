#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace ostrivane {

/// The login names of users. Each is asked for once and kept for good: asking can go over a network.
class UserNames {
public:
    /// Valid UTF-8; the decimal uid when there is no name. The reference holds as long as the object.
    const std::string& of(std::uint32_t uid);

private:
    std::unordered_map<std::uint32_t, std::string> known;
};

/// The home folder of the user who runs the program: $HOME, or what the user database says; empty when neither names a
/// full path. Nothing need lie there.
std::string homeFolder();

} // namespace ostrivane
