#include "core/judgement/AlertBook.hpp"

#include <cstddef>

namespace ostrivane {

bool AlertBook::enter(const AlertRule& rule, std::string_view subject, double now) {
    Times& times = lastFired[static_cast<std::size_t>(rule.kind)];
    const auto last = times.find(subject);
    if (last == times.end()) {
        times.emplace(subject, now);
        return true;
    }
    if (now - last->second < rule.cooldown)
        return false;
    last->second = now;
    return true;
}

} // namespace ostrivane
