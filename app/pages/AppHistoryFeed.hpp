#pragma once

#include "app/pages/RangeFeed.hpp"
#include "core/history/AppRow.hpp"

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// The rows of one application over a range.
class AppHistoryFeed final : public RangeFeed {
public:
    AppHistoryFeed(PageContext& given, HistoryRange first, QObject* parent) : RangeFeed(given, first, parent) {}

    /// Absent: no rows are wanted.
    void setApp(std::optional<std::string> key);
    HistoryRange range() const { return *chosenRange(); }

    /// Oldest first, of what was answered last; null until the present question was answered once.
    const std::vector<AppRow>* rows() const { return isReady() ? &answered : nullptr; }

protected:
    bool isWanted() const override { return app.has_value(); }
    void forget() override { answered.clear(); }
    std::function<void()> ask(HistoryStore& history, Date since, Date until) override;

private:
    std::optional<std::string> app;
    std::vector<AppRow> answered;
};

} // namespace ostrivane
