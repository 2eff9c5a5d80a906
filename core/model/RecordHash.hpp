#pragma once

#include <boost/container_hash/hash.hpp>
#include <boost/describe/members.hpp>

#include <cstddef>

namespace ostrivane {

/// Hash of a described record, field by field; equal records hash alike. For unordered containers of records.
struct RecordHash {
    template <class Record>
    std::size_t operator()(const Record& record) const {
        return boost::hash<Record>()(record);
    }
};

} // namespace ostrivane
