#pragma once

#include "core/attribution/DevClassifier.hpp"

namespace ostrivane::DevClassifier {

/// A text in lower case and what it stands for.
struct TableRow {
    std::string_view text;
    Match match;
};

/// Executables by their whole name.
extern const std::array<TableRow, 55> executables;

/// Texts looked for within the arguments, as bytes, the first that occurs deciding.
extern const std::array<TableRow, 39> hintNeedles;

/// Applications of macOS, by the path of the bundle.
extern const std::array<AIBundleRule, 6> macAIBundles;

/// Applications of Linux, by id or name of the desktop entry.
extern const std::array<AIBundleRule, 5> linuxAIBundles;

} // namespace ostrivane::DevClassifier
