#pragma once

#include <QLocale>
#include <QString>

#include <cstdint>

namespace ostrivane {

/// A count for a person: from 10,000 on with the grouping of the user's language, "612" and "4096" without.
inline QString countText(std::int64_t count) {
    constexpr std::int64_t grouped = 10'000;
    return count > -grouped && count < grouped ? QString::number(count) : QLocale().toString(qlonglong(count));
}

} // namespace ostrivane
