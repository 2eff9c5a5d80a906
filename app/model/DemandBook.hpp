#pragma once

#include "core/sampling/SamplingDemand.hpp"

#include <cstdint>
#include <map>
#include <string>

namespace ostrivane {

/// Who is looking: counts the views of each page, of which there can be several at a time.
class DemandBook {
public:
    const SamplingDemand& demand() const { return current; }

    void setPopoverVisible(bool visible) { current.popoverVisible = visible; }
    void setWindowVisible(bool visible) { current.windowVisible = visible; }
    void registerPage(const std::string& name) { add(name, 1); }
    /// Goes below 0 where nothing was registered.
    void unregisterPage(const std::string& name) { add(name, -1); }

private:
    void add(const std::string& name, std::int64_t change) {
        const std::int64_t count = views[name] += change;
        if (count > 0)
            current.pages.insert(name);
        else
            current.pages.erase(name);
    }

    SamplingDemand current;
    std::map<std::string, std::int64_t> views; ///< by page
};

} // namespace ostrivane
