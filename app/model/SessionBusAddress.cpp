#include "app/model/SessionBusAddress.hpp"

#include <fmt/format.h>

#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>

namespace ostrivane {

namespace {

constexpr std::string_view starting = "autolaunch:";

std::string withoutStarting(std::string_view addresses) {
    std::string kept;
    while (!addresses.empty()) {
        const std::size_t end = addresses.find(';');
        const std::string_view address = addresses.substr(0, end);
        if (!address.empty() && !address.starts_with(starting)) {
            kept += kept.empty() ? "" : ";";
            kept += address;
        }
        addresses.remove_prefix(end == std::string_view::npos ? addresses.size() : end + 1);
    }
    return kept;
}

/// As a value within an address.
std::string escaped(std::string_view path) {
    constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_/.\\*";
    std::string out;
    for (const char c : path)
        if (plain.find(c) != std::string_view::npos)
            out += c;
        else
            fmt::format_to(std::back_inserter(out), "%{:02x}", static_cast<unsigned char>(c));
    return out;
}

} // namespace

std::optional<std::string> sessionBusAddress(const SessionBusVariables& variables) {
    if (std::string told = withoutStarting(variables.address); !told.empty())
        return told;
    if (!variables.runtimeFolder.starts_with('/'))
        return std::nullopt;
    const std::string path = variables.runtimeFolder + "/bus";
    std::error_code ignored;
    return std::filesystem::is_socket(path, ignored) ? std::optional("unix:path=" + escaped(path)) : std::nullopt;
}

} // namespace ostrivane
