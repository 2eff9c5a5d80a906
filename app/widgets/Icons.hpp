#pragma once

#include <QColor>
#include <QPixmap>

#include <string_view>

class QIcon;

namespace ostrivane {

enum class Page;

/// The program's own icons, drawn in one ink.
namespace Icons {

/// "page.cpu".
std::string_view nameOf(Page page);

/// A symbol as insights and health categories name them ("memorychip"), a page ("page.cpu") or a control ("back"),
/// `pixels` wide and high (in device-independent pixels). A null pixmap for an unknown name. Kept, so that asking again
/// costs a look-up.
QPixmap pixmap(std::string_view name, int pixels, const QColor& colour, qreal deviceRatio);

/// The same for menus and buttons, in the theme's `text2`, as it is now.
QIcon icon(std::string_view name);

bool exists(std::string_view name);

/// Forgets what was drawn, after a change of theme.
void clear();

} // namespace Icons

} // namespace ostrivane
