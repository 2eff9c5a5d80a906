#include "core/sampling/Cadences.hpp"

#include <algorithm>

namespace ostrivane {

namespace {
constexpr double slackSeconds = 0.05;
}

bool Cadences::due(std::string_view key, double every, double now) {
    const auto known = lastRun.find(key);
    if (known == lastRun.end()) {
        lastRun.emplace(key, now);
        return true;
    }
    if (every - slackSeconds > now - known->second)
        return false;
    known->second = now;
    return true;
}

void Cadences::expire(std::string_view key) {
    if (const auto known = lastRun.find(key); known != lastRun.end())
        lastRun.erase(known);
}

void Cadences::clockSteppedBack(double now) {
    for (auto& [key, time] : lastRun)
        time = std::min(time, now);
}

} // namespace ostrivane
