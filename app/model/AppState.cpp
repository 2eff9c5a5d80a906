#include "app/model/AppState.hpp"

#include "core/attribution/PathText.hpp"

#include <algorithm>

namespace ostrivane {

const ApplicationSnapshot* AppState::app(const std::optional<std::string>& key) const {
    if (!key)
        return nullptr;
    const auto found = std::ranges::find(snapshot->applications, *key, &ApplicationSnapshot::key);
    return found == snapshot->applications.end() ? nullptr : &*found;
}

std::vector<const ProcessSnapshot*> AppState::processes(const ApplicationSnapshot& app) const {
    std::vector<std::int32_t> pids(app.pids.begin(), app.pids.end());
    std::ranges::sort(pids);
    std::vector<const ProcessSnapshot*> found;
    for (const ProcessSnapshot& process : snapshot->processes)
        if (std::ranges::binary_search(pids, process.pid))
            found.push_back(&process);
    return found;
}

std::string AppState::appName(const std::string& key) const {
    const ApplicationSnapshot* present = app(key);
    return present ? present->name : std::string(PathText::lastComponent(key));
}

std::string AppState::statusSummary() const {
    using Status = HealthCategory::Status;
    std::string names;
    int count = 0;
    for (const HealthCategory& category : health) {
        if (category.status != Status::elevated && category.status != Status::high)
            continue;
        names += (count++ > 0 ? ", " : "") + category.name;
    }
    if (count == 0)
        return "Everything looks normal";
    return names + (count == 1 ? " needs attention" : " need attention");
}

} // namespace ostrivane
