#include "app/pages/AlertLines.hpp"

#include <gtest/gtest.h>

#include <QPersistentModelIndex>
#include <QSignalSpy>

namespace ostrivane {
namespace {

constexpr double hour = 3600;

std::vector<Alert> alerts(int newest, int count) {
    std::vector<Alert> made;
    for (int number = newest; number > newest - count; --number) {
        Alert alert;
        alert.id.data[0] = static_cast<std::uint8_t>(number % 256);
        alert.id.data[1] = static_cast<std::uint8_t>(number / 256);
        alert.date = Date{1'700'000'000 + number * hour};
        alert.title = "Alert " + std::to_string(number);
        made.push_back(alert);
    }
    return made;
}

std::vector<AlertLine> lines(const std::vector<Alert>& shown) {
    return alertLines(shown, AlertFilter::all, Date{1'700'000'000 + 400 * hour});
}

TEST(AlertLines, keepTheirPlaceWhenOneComesAndTheOldestGoes) {
    AlertLines model;
    model.assign(lines(alerts(300, 300)));
    ASSERT_GT(model.rowCount(), 300);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    const QPersistentModelIndex watched(model.index(100));
    const std::string title = model.line(watched)->title;
    for (int newest = 301; newest <= 330; ++newest) {
        const auto fresh = lines(alerts(newest, 300));
        model.assign(fresh);
        ASSERT_EQ(model.rowCount(), static_cast<int>(fresh.size()));
        for (int row = 0; row < model.rowCount(); ++row)
            ASSERT_EQ(*model.line(model.index(row)), fresh[static_cast<std::size_t>(row)]) << newest << " " << row;
    }
    EXPECT_TRUE(watched.isValid());
    EXPECT_EQ(model.line(watched)->title, title);
    EXPECT_EQ(resets.count(), 0);
}

TEST(AlertLines, renameADayInPlaceAndSurviveAnotherOrder) {
    AlertLines model;
    const auto shown = alerts(5, 5);
    model.assign(alertLines(shown, AlertFilter::all, Date{1'700'000'000 + 5 * hour}));
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    model.assign(alertLines(shown, AlertFilter::all, Date{1'700'000'000 + 29 * hour})); // past midnight
    EXPECT_GE(changes.count(), 1);
    EXPECT_EQ(resets.count(), 0);
    auto turned = lines(shown);
    std::ranges::reverse(turned);
    model.assign(turned);
    EXPECT_EQ(*model.line(model.index(0)), turned[0]);
    model.assign({});
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.line(model.index(0)), nullptr);
}

TEST(AlertLines, offerAlertsButNoDays) {
    AlertLines model;
    model.assign(lines(alerts(1, 1)));
    EXPECT_FALSE(model.flags(model.index(0)).testFlag(Qt::ItemIsSelectable));
    EXPECT_TRUE(model.flags(model.index(1)).testFlag(Qt::ItemIsSelectable));
}

} // namespace
} // namespace ostrivane
