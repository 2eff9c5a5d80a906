#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace ostrivane {

struct ApplicationSnapshot;

/// Icons of applications and processes: the application's own where the desktop has one, else a tile with its initial
/// in a colour of its key, and a gear for programs of the command line ("exe:" keys). Kept; asking again is a look-up.
namespace AppIcons {

/// @param key  of the application
/// @param bundlePath  of its bundle or desktop entry
QPixmap pixmap(std::string_view key, std::string_view name, const std::optional<std::string>& bundlePath, int pixels,
               qreal deviceRatio);
QPixmap pixmap(const ApplicationSnapshot& app, int pixels, qreal deviceRatio);

/// The ground of the tile that stands for an application without an icon; white lettering is readable on it.
QColor tileColour(std::string_view key);

/// Forgets what was drawn, after a change of theme.
void clear();

} // namespace AppIcons

} // namespace ostrivane
