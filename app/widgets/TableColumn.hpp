#pragma once

#include "app/widgets/Theme.hpp"

#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

class QPixmap;

namespace ostrivane {

/// What a column is sorted by: the raw value, never its text. Texts are compared as a person orders them (natural
/// order, without regard to case). Absent values are the least.
using SortKey = std::variant<std::monostate, double, std::string_view>;

/// All that is to be known of a column of a table over records of one type, in one place.
template <class Row>
struct TableColumn {
    std::string_view id; ///< under which its width and visibility are kept
    QString title;
    bool isNumeric = false; ///< right-aligned, with figures of equal width
    int width = 0;          ///< at a base of 13 pixels; 0: takes what the others leave
    bool isHideable = true;
    std::function<QString(const Row&)> text;
    std::function<SortKey(const Row&)> sortKey; ///< empty: cannot be sorted by
    bool sortsDescendingFirst = false;
    bool isStrong = false; ///< weight 500
    Qt::TextElideMode elide = Qt::ElideRight;

    std::function<double(const Row&)> heat{}; ///< 0 to 1: how much of the column's full scale
    std::function<double(const Row&)> bar{};  ///< 0 to 1: a small bar ahead of the figure
    Series barSeries = Series::s1;
    std::function<Tone(const Row&)> tone{};
    std::function<bool(const Row&)> isBold{};                           ///< weight 600
    std::function<QPixmap(const Row&, int pixels, qreal ratio)> icon{}; ///< ahead of the text
    std::function<QString(const Row&)> note{};                          ///< lighter, behind the text: a count
    std::function<QString(const Row&)> suffix{};                        ///< behind a figure, in a slot of its own: "*"
    std::function<QString(const Row&)> toolTip{};                       ///< where it says more than the text
};

} // namespace ostrivane
