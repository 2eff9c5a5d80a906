#include "app/widgets/TableMemory.hpp"

#include "app/model/KeyValueStore.hpp"
#include "core/model/JSON.hpp"

#include <boost/json/object.hpp>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double narrowest = 24;
constexpr double widest = 4000;

std::string keyOf(const std::string& table) {
    return "table." + table;
}

} // namespace

bool TableMemory::hides(const std::string& column) const {
    return std::ranges::find(hidden, column) != hidden.end();
}

void TableMemory::setHidden(const std::string& column, bool hides) {
    std::erase(hidden, column);
    if (hides)
        hidden.push_back(column);
}

TableMemory TableMemory::read(const KeyValueStore& store, const std::string& table) {
    TableMemory memory;
    const auto document = store.json(keyOf(table));
    const auto json = document ? JSON::parse(*document) : std::nullopt;
    const boost::json::object* members = json ? json->if_object() : nullptr;
    if (!members)
        return memory;
    if (const boost::json::value* kept = members->if_contains("widths"); kept && kept->is_object())
        for (const auto& [column, width] : kept->get_object())
            if (const auto value = JSON::read<double>(width); value && *value >= narrowest && *value <= widest)
                memory.widths.emplace(column, *value);
    if (const boost::json::value* kept = members->if_contains("hidden"))
        memory.hidden = JSON::read<std::vector<std::string>>(*kept).value_or(std::vector<std::string>());
    return memory;
}

void TableMemory::write(KeyValueStore& store, const std::string& table) const {
    std::string document = R"({"widths":{)";
    for (const auto& [column, width] : widths) {
        if (document.back() != '{')
            document += ',';
        JSON::writeText(document, column);
        document += ':';
        JSON::writeNumber(document, width);
    }
    document += R"(},"hidden":)";
    JSON::write(document, hidden);
    document += '}';
    store.setJSON(keyOf(table), document);
}

} // namespace ostrivane
