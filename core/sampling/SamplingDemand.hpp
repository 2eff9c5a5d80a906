#pragma once

#include "core/model/Described.hpp"

#include <functional>
#include <set>
#include <string>

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

} // namespace ostrivane
