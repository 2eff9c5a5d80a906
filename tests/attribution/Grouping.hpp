#pragma once

#include "core/attribution/AppGrouper.hpp"
#include "core/attribution/AppRules.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ostrivane {

/// The keys of `inputs` by pid, as a collector gets them on one tick.
inline std::map<std::int32_t, std::string> keysOf(const std::vector<AppGrouper::Input>& inputs, const AppRules& rules) {
    std::vector<AppGrouper::OwnKeys> own;
    for (const auto& input : inputs)
        own.push_back(AppGrouper::ownKeys(input, rules));
    std::vector<AppGrouper::Process> processes;
    for (std::size_t at = 0; at < inputs.size(); ++at)
        processes.push_back({inputs[at].pid, inputs[at].ppid, inputs[at].responsiblePID, &own[at]});
    const auto keys = AppGrouper::assign(processes, rules);
    std::map<std::int32_t, std::string> byPID;
    for (std::size_t at = 0; at < inputs.size(); ++at)
        byPID.emplace(inputs[at].pid, keys[at]);
    return byPID;
}

} // namespace ostrivane
