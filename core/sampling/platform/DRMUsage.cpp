#include "core/sampling/platform/DRMUsage.hpp"

#include "core/sampling/platform/Scanner.hpp"

#include <algorithm>

namespace ostrivane {

namespace {

constexpr std::size_t largestCount = 32; // engines of a client; real ones have up to nine kinds

/// What follows `prefix` in `text`; absent when it does not begin so, and when nothing follows.
std::optional<std::string_view> after(std::string_view prefix, std::string_view text) {
    return text.size() > prefix.size() && text.starts_with(prefix) ? std::optional(text.substr(prefix.size()))
                                                                   : std::nullopt;
}

DRMUsage::Engine* engineNamed(DRMUsage& usage, std::string_view name) {
    const auto found = std::ranges::find(usage.engines, name, &DRMUsage::Engine::name);
    if (found != usage.engines.end())
        return &*found;
    if (usage.engines.size() >= largestCount)
        return nullptr;
    return &usage.engines.emplace_back(DRMUsage::Engine{.name = std::string(name)});
}

std::optional<std::uint64_t> nanoseconds(std::string_view value) {
    Scanner words(value);
    const auto number = words.number<std::uint64_t>();
    return words.word() == "ns" && words.word().empty() ? number : std::nullopt;
}

/// A line about an engine. The longer keys come first: "engine-" begins "engine-capacity-" too.
void noteEngine(DRMUsage& usage, std::string_view key, std::string_view value) {
    const auto number = Text::number<std::uint64_t>(value);
    if (const auto name = after("engine-capacity-", key)) {
        DRMUsage::Engine* engine = number && *number > 0 ? engineNamed(usage, *name) : nullptr;
        if (engine)
            engine->capacity = *number;
    } else if (const auto busy = after("engine-", key)) {
        const auto nanos = nanoseconds(value);
        DRMUsage::Engine* engine = nanos ? engineNamed(usage, *busy) : nullptr;
        if (engine)
            engine->busyNanos = nanos;
    } else if (const auto total = after("total-cycles-", key)) {
        DRMUsage::Engine* engine = number ? engineNamed(usage, *total) : nullptr;
        if (engine)
            engine->totalCycles = number;
    } else if (const auto cycles = after("cycles-", key)) {
        DRMUsage::Engine* engine = number ? engineNamed(usage, *cycles) : nullptr;
        if (engine)
            engine->cycles = number;
    }
}

} // namespace

std::optional<DRMUsage> DRMUsage::parse(std::string_view text) {
    DRMUsage usage;
    bool hasClient = false;
    for (Scanner lines(text); !lines.atEnd();) {
        const std::string_view line = lines.line();
        const auto colon = line.find(':');
        const auto key = after("drm-", line.substr(0, colon));
        if (!key || colon == std::string_view::npos)
            continue;
        const std::string_view value = Text::trimmed(line.substr(colon + 1));
        if (*key == "driver") {
            usage.driver = value;
        } else if (*key == "pdev") {
            usage.address = value;
        } else if (*key == "client-id") {
            const auto number = Text::number<std::uint64_t>(value);
            hasClient = number.has_value();
            usage.client = number.value_or(0);
        } else {
            noteEngine(usage, *key, value);
        }
    }
    return hasClient ? std::optional(std::move(usage)) : std::nullopt;
}

} // namespace ostrivane
