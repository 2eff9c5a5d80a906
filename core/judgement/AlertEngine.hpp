#pragma once

#include "core/judgement/Alert.hpp"
#include "core/judgement/AlertBook.hpp"
#include "core/judgement/AlertRule.hpp"
#include "core/judgement/AlertSeries.hpp"
#include "core/model/PlatformWords.hpp"
#include "core/model/SystemSnapshot.hpp"
#include "core/model/TimedValue.hpp"

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace ostrivane {

/// Decides when something deserves the user's attention. Belongs to one owner on one thread, which must hand it every
/// snapshot, also while nobody looks: else it knows too little of a rule's window to judge it. What it knows lives in
/// memory alone; after a start each window has to pass first.
class AlertEngine {
public:
    /// Of several rules of one kind the last one counts; a kind without a rule never fires.
    AlertEngine(std::span<const AlertRule> rules, const PlatformWords& words);

    /// Takes other rules; what was seen and what has fired stays known.
    void update(std::span<const AlertRule> rules);

    /// Takes the snapshot in and gives what fired on it. A snapshot without an interval, as the first one is, is not
    /// looked at.
    std::vector<Alert> evaluate(const SystemSnapshot& snapshot);

    /// Bytes, of the application with that key over the past three hours; empty when it is not known.
    std::vector<TimedValue> memorySeries(std::string_view key) const;
    /// Cores, over the past 65 minutes.
    std::vector<TimedValue> cpuSeries(std::string_view key) const;

    /// The `timestamp` since which no snapshot told normal memory pressure; absent while it is normal.
    std::optional<double> pressureElevatedSince() const { return series.pressureElevatedSince; }

private:
    std::vector<TimedValue> points(std::string_view key, RollingSeries AppSeries::*which) const;

    std::array<std::optional<AlertRule>, alertKindCount> rules; ///< by kind
    PlatformWords words;
    AlertSeries series;
    AlertBook book;
};

} // namespace ostrivane
