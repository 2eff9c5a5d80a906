#pragma once

#include <QFont>

namespace ostrivane {

/// What a piece of lettering is for; gives its size, weight and line height.
enum class TypeRole {
    hero,          ///< 30/36, the one figure of a page
    tileValue,     ///< 22/28
    gaugeValue,    ///< 24/28
    pageTitle,     ///< 19/24
    sectionValue,  ///< 20/26
    statValue,     ///< 15/20
    body,          ///< 13/18
    bodyStrong,    ///< 13/18, 600
    cardTitle,     ///< 13/20
    dialogTitle,   ///< 14/20
    table,         ///< 12.5/18
    tableStrong,   ///< 12.5/18, 500
    tableHead,     ///< 11.5/16
    secondary,     ///< 12/16
    caption,       ///< 11/14
    captionStrong, ///< 11/14, 600
    code           ///< 12/16, of fixed width
};

/// Lettering and lengths, all in proportion to the system's font: at its size of 13 pixels they are what they are
/// called.
namespace Type {

/// Takes the size of the system's font, in pixels; kept within 12 to 16, above that only where the user's own scale of
/// lettering is larger (up to 32).
void setBase(double pixels);
double base();

QFont font(TypeRole role);
int lineHeight(TypeRole role);

/// Pixels for a length of `length` at a base of 13.
int px(double length);

} // namespace Type

} // namespace ostrivane
