#pragma once

#include <exception>
#include <string>
#include <utility>

namespace ostrivane {

/// What SQLite refused, in its own words. The one exception type of the core; it never leaves the history's store.
class SQLiteError : public std::exception {
public:
    enum class Kind { open, prepare, step };

    SQLiteError(Kind which, std::string words) : kind(which), description(std::move(words)) {}

    const char* what() const noexcept override { return description.c_str(); }

    Kind kind;
    std::string description;
};

} // namespace ostrivane
