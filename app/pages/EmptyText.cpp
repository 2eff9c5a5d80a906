#include "app/pages/EmptyText.hpp"

#include "app/widgets/Strings.hpp"
#include "core/model/PlatformWords.hpp"

namespace ostrivane {

EmptyText emptyText(const QString& subject, bool hasFirstSample, bool hasAny, const PlatformWords& words) {
    if (!hasFirstSample)
        return {.title = QStringLiteral("Measuring…"), .action = {}};
    if (!hasAny)
        return {.title = unavailableText(subject, words), .action = {}};
    return {.title = QStringLiteral("No matches."), .action = QStringLiteral("Clear Filter")};
}

QString unavailableText(const QString& subject, const PlatformWords& words) {
    return subject + QStringLiteral(" are unavailable on this %1.").arg(text(words.computer));
}

} // namespace ostrivane
