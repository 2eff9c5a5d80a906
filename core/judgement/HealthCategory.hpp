#pragma once

#include "core/model/Described.hpp"
#include "core/model/RawValue.hpp"

#include <string>
#include <vector>

namespace ostrivane {

/// One side of the machine's condition, in words. Its identity is `id`.
struct HealthCategory {
    enum class Status { good = 0, elevated = 1, high = 2, unknown = 3 };

    std::string id;
    std::string name;
    std::string symbol; ///< of the icon
    Status status = Status::unknown;
    std::string label;                 ///< one or two words for `status`
    std::vector<std::string> evidence; ///< sentences, in the order to show them
    std::string destination;           ///< the page that explains it

    friend bool operator==(const HealthCategory&, const HealthCategory&) = default;
};
BOOST_DESCRIBE_STRUCT(HealthCategory, (), (id, name, symbol, status, label, evidence, destination))
static_assert(describesEveryMember<HealthCategory>);

constexpr HealthCategory::Status lastCase(EnumTag<HealthCategory::Status>) {
    return HealthCategory::Status::unknown;
}

} // namespace ostrivane
