#include "app/widgets/RowsModel.hpp"

#include "app/widgets/Strings.hpp"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>

namespace ostrivane {
namespace {

struct Item {
    int id = 0;
    std::optional<double> value{};
    std::string name{};
};
using Items = std::vector<Item>;
using Model = RowsModel<const Item*, int>;

constexpr int nameColumn = 0;
constexpr int valueColumn = 1;

class RowsModelTest : public ::testing::Test {
protected:
    std::vector<TableColumn<const Item*>> columns() {
        return {{.id = "name",
                 .title = QStringLiteral("Name"),
                 .text =
                     [this](const Item* const& item) {
                         ++formatted;
                         return text(item->name);
                     },
                 .sortKey = [](const Item* const& item) { return SortKey(std::string_view(item->name)); }},
                {.id = "value",
                 .title = QStringLiteral("Value"),
                 .isNumeric = true,
                 .text = [](const Item* const& item) { return QString::number(item->value.value_or(-1)); },
                 .sortKey = [](const Item* const& item) { return item->value ? SortKey(*item->value) : SortKey(); },
                 .heat = [](const Item* const& item) { return item->value.value_or(0); }}};
    }

    std::weak_ptr<const Items> assign(Items items) {
        const auto kept = std::make_shared<const Items>(std::move(items));
        std::vector<const Item*> rows;
        for (const Item& item : *kept)
            rows.push_back(&item);
        model.assign(std::move(rows), kept);
        return kept;
    }

    std::vector<int> ids() const {
        std::vector<int> shown;
        for (int row = 0; row < model.rowCount(); ++row)
            shown.push_back(*model.id(row));
        return shown;
    }
    std::vector<int> goneIDs() const {
        std::vector<int> gone;
        for (int row = 0; row < model.rowCount(); ++row)
            if (model.isGone(row))
                gone.push_back(*model.id(row));
        return gone;
    }

    int formatted = 0;
    Model model{columns(), [](const Item* const& item) { return item->id; }};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

using Order = std::vector<int>;

TEST(CollationKey, OrdersTextsAsAPersonDoes) {
    const std::vector<std::string> ordered{"",       " a",     "10",      "Alpha",   "\xC3\xA4lter", // älter
                                           "item",   "Item 2", "item 9",  "ITEM 10", "item 010b",
                                           "item x", "node",   "Node.js", "zeta"};
    for (std::size_t at = 1; at < ordered.size(); ++at)
        EXPECT_LT(collationKey(ordered[at - 1]), collationKey(ordered[at])) << ordered[at - 1] << " | " << ordered[at];
    EXPECT_EQ(collationKey("Zo\xC3\xAB"), collationKey("ZOE"));
    EXPECT_LT(collationKey("a99999999999999999999"), collationKey("a100000000000000000000")); // beyond any number
}

TEST_F(RowsModelTest, SortsByRawValuesWithAbsentOnesLeastAndEqualOnesByIdentity) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    assign({{4, 10.0, "b"}, {2, 9.0, "B"}, {7, {}, "item 10"}, {5, nan, "item 9"}, {1, 10.0, "a"}});
    EXPECT_EQ(ids(), (Order{4, 2, 7, 5, 1})) << "as assigned, while nothing is sorted by";
    model.sort(valueColumn, Qt::DescendingOrder);
    EXPECT_EQ(ids(), (Order{1, 4, 2, 5, 7}));
    model.sort(valueColumn, Qt::AscendingOrder);
    EXPECT_EQ(ids(), (Order{5, 7, 2, 1, 4}));
    model.sort(nameColumn, Qt::AscendingOrder);
    EXPECT_EQ(ids(), (Order{1, 2, 4, 5, 7}));
    assign({{4, 10.0, "renamed"}, {2, 9.0, "B"}, {7, {}, "item 10"}, {5, nan, "item 9"}, {1, 10.0, "a"}});
    EXPECT_EQ(ids(), (Order{1, 2, 5, 7, 4})) << "a text that changed is not compared by what it was";
}

TEST_F(RowsModelTest, HeadsTellInWordsWhatIsSortedBy) {
    const auto told = [this](int column) {
        return model.headerData(column, Qt::Horizontal, Qt::AccessibleTextRole).toString().toStdString();
    };
    EXPECT_EQ(told(valueColumn), "Value");
    model.sort(valueColumn, Qt::DescendingOrder);
    EXPECT_EQ(told(valueColumn), "Value, sorted, highest first");
    EXPECT_EQ(told(nameColumn), "Name");
    model.sort(valueColumn, Qt::AscendingOrder);
    EXPECT_EQ(told(valueColumn), "Value, sorted, lowest first");
    model.sort(nameColumn, Qt::AscendingOrder);
    EXPECT_EQ(told(nameColumn), "Name, sorted, A to Z");
    EXPECT_EQ(model.headerData(nameColumn, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Name"));
}

TEST_F(RowsModelTest, FormatsNothingUntilACellIsAskedForAndSignalsOnce) {
    assign({{1, 1.0, "a"}, {2, 2.0, "b"}, {3, 3.0, "c"}});
    model.sort(valueColumn, Qt::AscendingOrder);
    formatted = 0;
    const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    const QSignalSpy layouts(&model, &QAbstractItemModel::layoutChanged);
    const QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    const QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QObject::disconnect(&model, nullptr, &tester, nullptr); // it reads every cell that changes

    assign({{3, 3.5, "c"}, {2, 2.5, "b"}, {1, 1.5, "a"}});
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(layouts.size(), 0) << "the order was right";
    assign({{5, 0.5, "e"}, {3, 0.1, "c"}, {4, 1.0, "d"}}); // two gone, two new, all elsewhere
    EXPECT_EQ(ids(), (Order{3, 5, 4}));
    EXPECT_EQ(inserts.size(), 1);
    EXPECT_EQ(layouts.size(), 1);
    EXPECT_EQ(removals.size(), 1);
    EXPECT_EQ(changes.size(), 2);
    EXPECT_EQ(resets.size(), 0);
    EXPECT_EQ(formatted, 0);
}

TEST_F(RowsModelTest, HeldRowsStayWhereTheyAreAndSettleAfterwards) {
    assign({{1, 5.0, "one"}, {2, 4.0, "two"}, {3, 3.0, "three"}});
    model.sort(valueColumn, Qt::DescendingOrder);
    model.setOrderHeld(true);
    assign({{3, 9.0, "three"}, {1, 1.0, "one"}, {4, 7.0, "four"}});
    EXPECT_EQ(ids(), (Order{1, 2, 3, 4}));
    EXPECT_EQ(goneIDs(), (Order{2}));
    EXPECT_EQ(model.cell(2, valueColumn).text, QStringLiteral("9")) << "figures go on changing";
    const RowsModelBase::Cell faded = model.cell(1, valueColumn);
    EXPECT_EQ(faded.text, QStringLiteral("4")) << "a gone row shows what it was last";
    EXPECT_EQ(faded.tone, Tone::text3);
    EXPECT_FALSE(faded.heat);
    EXPECT_EQ(model.row(1), nullptr);
    EXPECT_EQ(model.id(1), 2);

    assign({{2, 8.0, "two"}, {3, 9.0, "three"}, {4, 7.0, "four"}});
    EXPECT_EQ(ids(), (Order{1, 2, 3, 4}));
    EXPECT_EQ(goneIDs(), (Order{1})) << "who returns is there again";
    model.setOrderHeld(false);
    EXPECT_EQ(ids(), (Order{3, 2, 4}));
    EXPECT_FALSE(model.indexOf(1));

    model.setOrderHeld(true);
    assign({{2, 99.0, "two"}, {4, 7.0, "four"}});
    model.sort(nameColumn, Qt::AscendingOrder); // who sorts wants it sorted
    EXPECT_EQ(ids(), (Order{4, 2}));
}

TEST_F(RowsModelTest, AGoneRowKeepsNothingAliveAndThereAreNotTooMany) {
    model.setOrderHeld(true);
    const auto first = assign({{1, 1.0, "kept"}, {2, 2.0, "gone"}});
    assign({{1, 1.0, "kept"}});
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(model.cell(1, nameColumn).text, QStringLiteral("gone"));
    for (int id = 10; id < 1010; ++id) // a pointer rests on the list while short-lived ones come and go
        assign({{1, 1.0, "kept"}, {id, 1.0, "brief"}});
    EXPECT_LE(model.rowCount(), 502);
    EXPECT_EQ(*model.indexOf(1), 0);
    EXPECT_TRUE(model.isGone(*model.indexOf(2))) << "rows near the top do not move";
    EXPECT_TRUE(model.indexOf(1009));
}

TEST_F(RowsModelTest, TheFilterTakesEffectAtOnceAndOfTwoWithOneIdentityTheFirstCounts) {
    assign({{1, 1.0, "alpha"}, {2, 2.0, "beta"}, {1, 9.0, "double"}, {3, 3.0, "alphabet"}});
    EXPECT_EQ(ids(), (Order{1, 2, 3}));
    EXPECT_EQ((*model.row(0))->name, "alpha");
    model.setOrderHeld(true);
    model.setFilter([](const Item* const& item) { return item->name.starts_with("alpha"); });
    EXPECT_EQ(ids(), (Order{1, 3}));
    EXPECT_TRUE(goneIDs().empty());
    assign({{2, 2.0, "beta"}, {3, 3.0, "alphabet"}, {4, 3.0, "alphas"}});
    EXPECT_EQ(ids(), (Order{1, 3, 4}));
    model.setFilter({});
    EXPECT_EQ(ids(), (Order{2, 3, 4}));
}

/// Random ticks, holds, sorts and filters against a plain reference.
TEST_F(RowsModelTest, WithstandsChurn) {
    std::mt19937 random(7);
    const auto chance = [&](int percent) { return static_cast<int>(random() % 100) < percent; };
    std::map<int, Item> world;
    int nextID = 0;
    bool filters = false;
    std::vector<std::pair<int, QPersistentModelIndex>> watched;
    for (int tick = 0; tick < 400; ++tick) {
        std::erase_if(world, [&](const auto&) { return chance(4); });
        while (world.size() < 60 || chance(50)) {
            world[nextID] = {nextID, {}, "item " + std::to_string(nextID % 7)};
            ++nextID;
        }
        for (auto& [id, item] : world)
            if (chance(30))
                item.value = chance(20) ? std::nullopt : std::optional<double>(random() % 10);
        if (chance(10))
            model.setOrderHeld(!model.isOrderHeld());
        if (chance(5))
            model.sort(chance(50) ? nameColumn : valueColumn, chance(50) ? Qt::AscendingOrder : Qt::DescendingOrder);
        if (chance(5)) {
            filters = !filters;
            model.setFilter(filters ? [](const Item* const& item) { return item->id % 3 != 0; }
                                    : std::function<bool(const Item* const&)>());
        }
        const std::vector<int> before = ids();
        Items items;
        for (const auto& [id, item] : world)
            items.insert(items.begin() + static_cast<std::ptrdiff_t>(random() % (items.size() + 1)), item);
        assign(items);

        std::size_t live = 0;
        for (int row = 0; row < model.rowCount(); ++row) {
            ASSERT_EQ(model.indexOf(*model.id(row)), row);
            ASSERT_EQ(model.isGone(row), !world.contains(*model.id(row)) || (filters && *model.id(row) % 3 == 0));
            live += model.isGone(row) ? 0 : 1;
        }
        ASSERT_EQ(live, static_cast<std::size_t>(std::ranges::count_if(
                            world, [&](const auto& entry) { return !filters || entry.first % 3 != 0; })));
        if (model.isOrderHeld()) {
            const std::vector<int> now = ids();
            ASSERT_TRUE(std::equal(before.begin(), before.end(), now.begin()));
        } else if (model.sortColumn() == valueColumn) {
            const double absent = -1;
            for (int row = 1; row < model.rowCount(); ++row) {
                const double upper = (*model.row(row - 1))->value.value_or(absent);
                const double lower = (*model.row(row))->value.value_or(absent);
                ASSERT_TRUE(model.sortOrder() == Qt::AscendingOrder ? upper <= lower : upper >= lower);
                ASSERT_TRUE(upper != lower || *model.id(row - 1) < *model.id(row));
            }
        }
        for (const auto& [id, index] : watched)
            ASSERT_EQ(index.isValid() ? model.indexOf(id) : std::nullopt,
                      index.isValid() ? std::optional(index.row()) : model.indexOf(id));
        std::erase_if(watched, [](const auto& entry) { return !entry.second.isValid(); });
        if (const int row = static_cast<int>(random() % static_cast<unsigned>(model.rowCount())); watched.size() < 20)
            watched.emplace_back(*model.id(row), model.index(row, valueColumn));
    }
}

} // namespace
} // namespace ostrivane
