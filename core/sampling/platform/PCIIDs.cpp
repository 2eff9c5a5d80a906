#include "core/sampling/platform/PCIIDs.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/Scanner.hpp"

#include <charconv>

namespace ostrivane::PCIIDs {

namespace {

constexpr std::size_t digits = 4;

std::optional<std::uint16_t> hexadecimal(std::string_view text) {
    std::uint16_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

/// "1002  Advanced Micro Devices" begins with the number, four digits and a blank.
bool isAbout(std::string_view line, std::uint16_t number) {
    return line.size() > digits && line[digits] == ' ' && hexadecimal(line.substr(0, digits)) == number;
}

std::string marketed(std::string_view name) {
    const auto open = name.rfind('[');
    const auto close = name.rfind(']');
    const bool bracketed = open != std::string_view::npos && close != std::string_view::npos && close > open;
    const auto inside = bracketed ? Text::trimmed(name.substr(open + 1, close - open - 1)) : std::string_view();
    return Text::repaired(inside.empty() ? name : inside);
}

} // namespace

std::optional<std::string> deviceName(std::string_view list, std::uint16_t vendor, std::uint16_t device) {
    bool ofVendor = false;
    for (Scanner lines(list); !lines.atEnd();) {
        const std::string_view line = lines.line();
        if (line.empty() || line[0] == '#')
            continue;
        if (line[0] != '\t') {
            if (ofVendor)
                return std::nullopt; // the next vendor begins
            ofVendor = isAbout(line, vendor);
        } else if (ofVendor && isAbout(line.substr(1), device)) { // boards with the device stand behind two tabs
            const auto name = Text::trimmed(line.substr(1 + digits));
            return name.empty() ? std::nullopt : std::optional(marketed(name));
        }
    }
    return std::nullopt;
}

std::optional<std::uint16_t> id(std::string_view text) {
    const std::string_view number = Text::trimmed(text);
    return number.starts_with("0x") ? hexadecimal(number.substr(2)) : std::nullopt;
}

} // namespace ostrivane::PCIIDs
