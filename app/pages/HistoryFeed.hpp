#pragma once

#include "app/pages/RangeFeed.hpp"
#include "core/history/SystemRow.hpp"

#include <vector>

namespace ostrivane {

/// The machine's rows over a range.
class HistoryFeed final : public RangeFeed {
public:
    HistoryFeed(PageContext& given, QObject* parent) : RangeFeed(given, std::nullopt, parent) {}

    /// Oldest first, of what was answered last.
    const std::vector<SystemRow>& rows() const { return answered; }

protected:
    void forget() override { answered.clear(); }
    std::function<void()> ask(HistoryStore& history, Date since, Date until) override;

private:
    std::vector<SystemRow> answered;
};

} // namespace ostrivane
