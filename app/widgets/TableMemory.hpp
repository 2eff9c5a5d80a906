#pragma once

#include <map>
#include <string>
#include <vector>

namespace ostrivane {

class KeyValueStore;

/// What the user made of a table: kept under "table.ID".
struct TableMemory {
    std::map<std::string, double> widths; ///< by column, at a base of 13 pixels
    std::vector<std::string> hidden;      ///< columns

    bool hides(const std::string& column) const;
    void setHidden(const std::string& column, bool hides);

    /// What cannot be read, and widths that no table has, count as never set.
    static TableMemory read(const KeyValueStore& store, const std::string& table);
    void write(KeyValueStore& store, const std::string& table) const;

    friend bool operator==(const TableMemory&, const TableMemory&) = default;
};

} // namespace ostrivane
