#include "app/model/HistoryClaim.hpp"

#include "core/sampling/platform/UserFolders.hpp"

#include <fmt/format.h>

namespace ostrivane {

std::variant<HistoryLock, HistoryLock::Holder, HistoryLock::Problem> claimHistory(const std::string& folder,
                                                                                  const std::string& name) {
    if (auto problem = UserFolders::makeDirectory(folder))
        return *problem;
    return HistoryLock::take(folder, name);
}

std::string refusal(const HistoryLock::Holder& holder) {
    if (holder.pid == 0)
        return "Another program keeps the history.";
    return fmt::format("Another program keeps the history: {} (process {}).", holder.name, holder.pid);
}

} // namespace ostrivane
