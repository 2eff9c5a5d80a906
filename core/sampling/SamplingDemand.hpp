#pragma once

#include "core/model/Described.hpp"

#include <array>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace ostrivane {

/// Identifiers of the pages now shown.
using PageSet = std::set<std::string, std::less<>>;

/// What the interface shows now, and so what must be fresh. A new one takes the place of the old as a whole.
struct SamplingDemand {
    bool popoverVisible = false;
    bool windowVisible = false;
    PageSet pages;

    bool anyUI() const { return popoverVisible || windowVisible; }
    bool shows(std::string_view page) const { return pages.contains(page); }

    friend bool operator==(const SamplingDemand&, const SamplingDemand&) = default;
};

/// The pages with which every reading is wanted, for a command that shows all of them at once. Without "cpu": that page
/// asks for a tick a second, whatever the interval.
inline constexpr std::array<std::string_view, 7> readingPages{"gpu",     "projects", "ports",  "ai",
                                                              "network", "docker",   "devices"};

} // namespace ostrivane
