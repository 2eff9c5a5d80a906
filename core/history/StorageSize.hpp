#pragma once

#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <cstdint>

namespace ostrivane {

/// How much a folder or a disk held at one moment.
struct StorageSize {
    Date date;
    std::uint64_t bytes = 0;

    friend bool operator==(const StorageSize&, const StorageSize&) = default;
};
BOOST_DESCRIBE_STRUCT(StorageSize, (), (date, bytes))
static_assert(describesEveryMember<StorageSize>);

} // namespace ostrivane
