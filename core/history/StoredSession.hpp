#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace ostrivane {

/// A stretch of work as the history keeps it.
struct StoredSession {
    std::int64_t id = 0;
    std::string name;
    Date start;
    std::optional<Date> end;                ///< absent while it runs, and when the program ended before it
    std::optional<std::string> summaryJSON; ///< the summary, as JSON

    friend bool operator==(const StoredSession&, const StoredSession&) = default;
};
BOOST_DESCRIBE_STRUCT(StoredSession, (), (id, name, start, end, summaryJSON))
static_assert(describesEveryMember<StoredSession>);

} // namespace ostrivane
