#include "app/pages/HistoryFeed.hpp"

#include "core/history/HistoryStore.hpp"

#include <memory>
#include <utility>

namespace ostrivane {

std::function<void()> HistoryFeed::ask(HistoryStore& history, Date since, Date until) {
    const auto reply = std::make_shared<std::vector<SystemRow>>();
    history.systemRows(since, until, [reply](std::vector<SystemRow> rows) { *reply = std::move(rows); });
    return [this, reply] { answered = std::move(*reply); };
}

} // namespace ostrivane
