#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace ostrivane {

/// An alert as the history keeps it.
struct StoredAlert {
    std::int64_t id = 0;
    Date date;
    std::string rule; ///< raw value of its kind
    std::string severity;
    std::string title;
    std::string body;
    std::optional<std::string> subject;

    friend bool operator==(const StoredAlert&, const StoredAlert&) = default;
};
BOOST_DESCRIBE_STRUCT(StoredAlert, (), (id, date, rule, severity, title, body, subject))
static_assert(describesEveryMember<StoredAlert>);

} // namespace ostrivane
