#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace ostrivane {

/// Between the core's texts and the toolkit's. What is no UTF-8 becomes replacement characters.
inline QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace ostrivane
