#include "core/sampling/platform/CPUInfo.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/Scanner.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <vector>

namespace ostrivane {

namespace {

struct Part {
    std::uint32_t number;
    std::string_view name;
};

constexpr std::uint32_t arm = 0x41, qualcomm = 0x51, apple = 0x61; // "CPU implementer"
constexpr std::array<Part, 19> armParts{{{0xd03, "Cortex-A53"},
                                         {0xd04, "Cortex-A35"},
                                         {0xd05, "Cortex-A55"},
                                         {0xd07, "Cortex-A57"},
                                         {0xd08, "Cortex-A72"},
                                         {0xd09, "Cortex-A73"},
                                         {0xd0a, "Cortex-A75"},
                                         {0xd0b, "Cortex-A76"},
                                         {0xd0d, "Cortex-A77"},
                                         {0xd41, "Cortex-A78"},
                                         {0xd44, "Cortex-X1"},
                                         {0xd46, "Cortex-A510"},
                                         {0xd47, "Cortex-A710"},
                                         {0xd48, "Cortex-X2"},
                                         {0xd4d, "Cortex-A715"},
                                         {0xd4e, "Cortex-X3"},
                                         {0xd80, "Cortex-A520"},
                                         {0xd81, "Cortex-A720"},
                                         {0xd82, "Cortex-X4"}}};

std::optional<std::uint32_t> hexadecimal(std::string_view text) {
    if (!text.starts_with("0x"))
        return std::nullopt;
    text.remove_prefix(2);
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

std::string_view armName(std::uint32_t implementer, std::uint32_t number) {
    if (implementer == qualcomm)
        return "Qualcomm";
    if (implementer == apple)
        return "Apple";
    if (implementer != arm)
        return {};
    for (const Part& part : armParts)
        if (part.number == number)
            return part.name;
    return {};
}

struct Entry {
    std::string_view key;
    std::string_view value;
};

Entry entry(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos)
        return {};
    return {Text::trimmed(line.substr(0, colon)), Text::trimmed(line.substr(colon + 1))};
}

/// The first value under one of `keys`, in this order.
std::string_view firstValue(std::string_view text, std::initializer_list<std::string_view> keys) {
    for (const std::string_view key : keys)
        for (Scanner lines(text); !lines.atEnd();)
            if (const Entry found = entry(lines.line()); found.key == key && !found.value.empty())
                return found.value;
    return {};
}

struct Design {
    std::string_view name;
    std::uint64_t capacity = 0; ///< the highest of its cores
};

void note(std::vector<Design>& designs, std::string_view name, std::uint64_t capacity) {
    const auto found = std::find_if(designs.begin(), designs.end(), [&](const Design& d) { return d.name == name; });
    if (found == designs.end())
        designs.push_back({name, capacity});
    else
        found->capacity = std::max(found->capacity, capacity);
}

/// The different designs of ARM cores. Each core has a block of lines that begins with "processor".
std::vector<Design> armDesigns(std::string_view text, const CPUInfo::Capacities& capacities) {
    std::vector<Design> designs;
    std::uint64_t capacity = 0;
    std::uint32_t implementer = 0; // 0 is nobody
    for (Scanner lines(text); !lines.atEnd();) {
        const auto [key, value] = entry(lines.line());
        if (key == "processor") {
            const auto core = capacities.find(Text::number<std::int64_t>(value).value_or(-1));
            capacity = core == capacities.end() ? 0 : core->second;
            implementer = 0;
        } else if (key == "CPU implementer") {
            implementer = hexadecimal(value).value_or(0);
        } else if (key == "CPU part") {
            const std::string_view name = armName(implementer, hexadecimal(value).value_or(0));
            if (!name.empty())
                note(designs, name, capacity);
        }
    }
    std::stable_sort(designs.begin(), designs.end(),
                     [](const Design& a, const Design& b) { return a.capacity > b.capacity; });
    return designs;
}

std::string joined(const std::vector<Design>& designs) {
    std::string names;
    for (const Design& design : designs) {
        if (!names.empty())
            names += " + ";
        names += design.name;
    }
    return names;
}

} // namespace

std::string CPUInfo::brand(std::string_view text, const Capacities& capacities) {
    if (const std::string_view name = firstValue(text, {"model name", "Model Name"}); !name.empty())
        return Text::repaired(name);
    if (std::string names = joined(armDesigns(text, capacities)); !names.empty())
        return names;
    if (const std::string_view name = firstValue(text, {"cpu", "uarch"}); !name.empty())
        return Text::repaired(name);
    return "CPU";
}

} // namespace ostrivane
