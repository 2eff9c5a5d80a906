#include "app/pages/AppHistoryFeed.hpp"

#include "core/history/HistoryStore.hpp"

#include <memory>
#include <utility>

namespace ostrivane {

void AppHistoryFeed::setApp(std::optional<std::string> key) {
    if (key == app)
        return;
    app = std::move(key);
    begin();
}

std::function<void()> AppHistoryFeed::ask(HistoryStore& history, Date since, Date /*until*/) {
    const auto reply = std::make_shared<std::vector<AppRow>>();
    history.appRows(*app, since, [reply](std::vector<AppRow> rows) { *reply = std::move(rows); });
    return [this, reply] { answered = std::move(*reply); };
}

} // namespace ostrivane
