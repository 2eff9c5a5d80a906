#include "core/sampling/platform/Meminfo.hpp"

#include "core/sampling/platform/Scanner.hpp"

#include <array>
#include <limits>

namespace ostrivane {

namespace {

struct Field {
    std::string_view name;
    std::optional<std::uint64_t> Meminfo::*value;
};

constexpr std::array<Field, 14> fields{{{"MemTotal", &Meminfo::total},
                                        {"MemFree", &Meminfo::free},
                                        {"MemAvailable", &Meminfo::available},
                                        {"Buffers", &Meminfo::buffers},
                                        {"Cached", &Meminfo::cached},
                                        {"Active", &Meminfo::active},
                                        {"Inactive", &Meminfo::inactive},
                                        {"SwapTotal", &Meminfo::swapTotal},
                                        {"SwapFree", &Meminfo::swapFree},
                                        {"Zswap", &Meminfo::zswap},
                                        {"AnonPages", &Meminfo::anonymous},
                                        {"Shmem", &Meminfo::shared},
                                        {"KReclaimable", &Meminfo::kernelReclaimable},
                                        {"SReclaimable", &Meminfo::slabReclaimable}}};

const Field* fieldNamed(std::string_view name) {
    for (const Field& field : fields)
        if (field.name == name)
            return &field;
    return nullptr;
}

/// " 4210332 kB": the kernel writes "kB" for 1024 bytes. Without the unit the line was cut short, maybe in the number.
std::optional<std::uint64_t> bytes(Scanner words) {
    constexpr std::uint64_t unit = 1024;
    const auto count = words.number<std::uint64_t>();
    if (!count || *count > std::numeric_limits<std::uint64_t>::max() / unit || words.word() != "kB")
        return std::nullopt;
    return *count * unit;
}

} // namespace

Meminfo Meminfo::parse(std::string_view text) {
    Meminfo found;
    for (Scanner lines(text); !lines.atEnd();) {
        const std::string_view line = lines.line();
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos)
            continue;
        if (const Field* field = fieldNamed(line.substr(0, colon)))
            found.*field->value = bytes(Scanner(line.substr(colon + 1)));
    }
    return found;
}

} // namespace ostrivane
