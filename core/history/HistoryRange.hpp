#pragma once

#include "core/model/RawValue.hpp"

#include <array>
#include <string_view>

namespace ostrivane {

/// How far back a chart or a list looks.
enum class HistoryRange { hour1, hours12, hours24, days7, days30 };

constexpr std::array<RawText<HistoryRange>, 5> rawTexts(EnumTag<HistoryRange>) {
    return {{{HistoryRange::hour1, "1H"},
             {HistoryRange::hours12, "12H"},
             {HistoryRange::hours24, "24H"},
             {HistoryRange::days7, "7D"},
             {HistoryRange::days30, "30D"}}};
}

constexpr double seconds(HistoryRange range) {
    switch (range) {
    case HistoryRange::hour1:
        return 3600;
    case HistoryRange::hours12:
        return 43200;
    case HistoryRange::hours24:
        return 86400;
    case HistoryRange::days7:
        return 604800;
    case HistoryRange::days30:
        return 2592000;
    }
    return 0;
}

constexpr std::string_view label(HistoryRange range) {
    switch (range) {
    case HistoryRange::hour1:
        return "1 hour";
    case HistoryRange::hours12:
        return "12 hours";
    case HistoryRange::hours24:
        return "24 hours";
    case HistoryRange::days7:
        return "7 days";
    case HistoryRange::days30:
        return "30 days";
    }
    return {};
}

} // namespace ostrivane
