#pragma once

#include "app/model/KeyValueStore.hpp"

#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ostrivane {

/// A store without a disk. Its content can be shared with others of its kind, as programs share a file: each sees what
/// another one changed once it reloads.
class MemoryKeyValueStore final : public KeyValueStore {
public:
    struct JSONDocument {
        std::string text;
        friend bool operator==(const JSONDocument&, const JSONDocument&) = default;
    };
    using Value = std::variant<bool, std::int64_t, double, std::string, JSONDocument>;

    struct Content {
        std::map<std::string, Value, std::less<>> values;
        std::vector<std::string> written;   ///< keys, in the order of the writes and removals
        std::uint64_t changes = 0;          ///< raise it after changing `values` from outside
        std::optional<std::string> problem; ///< why nothing can be kept; a write then stays with the program
    };

    explicit MemoryKeyValueStore(std::shared_ptr<Content> shared = std::make_shared<Content>())
        : content(std::move(shared)), values(content->values) {}

    std::optional<bool> boolean(std::string_view key) const override { return as<bool>(key); }
    std::optional<double> number(std::string_view key) const override {
        if (const auto whole = as<std::int64_t>(key))
            return static_cast<double>(*whole);
        const auto value = as<double>(key);
        return value && std::isfinite(*value) ? value : std::nullopt;
    }
    std::optional<std::int64_t> integer(std::string_view key) const override {
        if (const auto value = as<double>(key); value && std::trunc(*value) == *value && std::abs(*value) < 0x1p53)
            return static_cast<std::int64_t>(*value);
        return as<std::int64_t>(key);
    }
    std::optional<std::string> text(std::string_view key) const override { return as<std::string>(key); }
    std::optional<std::string> json(std::string_view key) const override {
        const auto document = as<JSONDocument>(key);
        return document ? std::optional(document->text) : std::nullopt;
    }

    void setBoolean(std::string_view key, bool value) override { put(key, value); }
    void setNumber(std::string_view key, double value) override { put(key, value); }
    void setInteger(std::string_view key, std::int64_t value) override { put(key, value); }
    void setText(std::string_view key, std::string_view value) override { put(key, std::string(value)); }
    void setJSON(std::string_view key, std::string_view document) override {
        put(key, JSONDocument{std::string(document)});
    }
    void remove(std::string_view key) override {
        values.erase(std::string(key));
        keep(key, [&] { content->values.erase(std::string(key)); });
    }

    std::vector<std::string> keys() const override {
        std::vector<std::string> names;
        for (const auto& [name, value] : values)
            names.push_back(name);
        return names;
    }

    void reload() override { values = content->values; }

    std::function<bool()> watch() const override {
        return [shared = content, seen = content->changes]() mutable {
            return std::exchange(seen, shared->changes) != shared->changes;
        };
    }

    std::optional<std::string> problem() const override { return content->problem; }
    std::string place() const override { return "memory"; }

private:
    template <class Kind>
    std::optional<Kind> as(std::string_view key) const {
        const auto found = values.find(key);
        const Kind* value = found == values.end() ? nullptr : std::get_if<Kind>(&found->second);
        return value ? std::optional(*value) : std::nullopt;
    }

    void put(std::string_view key, Value value) {
        values.insert_or_assign(std::string(key), value);
        keep(key, [&] { content->values.insert_or_assign(std::string(key), std::move(value)); });
    }

    template <class Change>
    void keep(std::string_view key, const Change& change) {
        if (content->problem)
            return;
        change();
        content->written.emplace_back(key);
        ++content->changes;
    }

    std::shared_ptr<Content> content;
    std::map<std::string, Value, std::less<>> values; ///< as this program sees them
};

} // namespace ostrivane
