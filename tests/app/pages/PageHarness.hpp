#pragma once

#include "app/pages/PageView.hpp"
#include "app/window/LoginItem.hpp"
#include "tests/app/model/ModelHarness.hpp"

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

inline constexpr const char* laptop = "recordings/laptop.jsonl";
inline constexpr const char* developer = "recordings/developer.jsonl";
inline constexpr const char* virtualMachine = "recordings/virtual-machine.jsonl";
inline constexpr const char* troubledDay = "days/troubled.jsonl"; ///< ticks of a minute, see the README beside it

/// Every snapshot that a recording under tests/fixtures gives with the window open. Read once in the program.
const std::vector<SharedSnapshot>& recordedSnapshots(const std::string& recording);

/// A machine of which nothing can be believed: figures that are huge, negative or no numbers, names that are empty,
/// 4,096 characters long, right to left or no UTF-8, processes without application, 500 applications, 128 cores, and no
/// optional value at all.
SystemSnapshot damagedSnapshot();

/// A login item that does what it is told.
class ObedientLoginItem final : public LoginItem {
public:
    State state() const override { return now; }
    std::optional<std::string> set(bool enabled) override {
        if (!problem)
            now = enabled ? State::on : State::off;
        return problem;
    }

    State now = State::off;
    std::optional<std::string> problem;
};

/// What a page is tested with: a model on the test's thread, without a snapshot at first, and the page's context.
///
///     PageHarness harness;
///     harness.play(developer);
///     HealthPage page(harness.page);
///     harness.show(page);
class PageHarness : public ModelHarness {
public:
    static constexpr std::size_t allTicks = std::numeric_limits<std::size_t>::max();

    explicit PageHarness(const PlatformWords& words = PlatformWords::Linux);

    /// Takes in the first `ticks` snapshots of a recording; the time is the recorded one.
    void play(const std::string& recording, std::size_t ticks = allTicks);

    /// Takes in one snapshot; the time is that of its tick.
    void take(const SharedSnapshot& snapshot);

    /// Shows the page, as large as a window of 1240 × 800 gives it, or one of 960 × 620.
    void show(PageView& view, bool narrow = false);

    ObedientLoginItem loginItem;
    WayBack wayBack = WayBack::icon;
    std::vector<std::string> revealed;
    PageContext page;
};

} // namespace ostrivane
