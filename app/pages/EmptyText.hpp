#pragma once

#include <QString>

namespace ostrivane {

struct PlatformWords;

/// Why a list shows nothing.
struct EmptyText {
    QString title;
    QString action; ///< of the button below it; empty: none

    friend bool operator==(const EmptyText&, const EmptyText&) = default;
};

/// @param subject  what is listed, at the start of a sentence: "Processes"
/// @param hasAny  whether there is something that a filter left out
EmptyText emptyText(const QString& subject, bool hasFirstSample, bool hasAny, const PlatformWords& words);

/// "Processes are unavailable on this computer."
QString unavailableText(const QString& subject, const PlatformWords& words);

} // namespace ostrivane
