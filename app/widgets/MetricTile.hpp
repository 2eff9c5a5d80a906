#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"
#include "core/model/TimedValue.hpp"

#include <QAbstractButton>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ostrivane {

class Badge;

/// What a tile of the overview says.
struct TileText {
    QString caption;
    QString value;    ///< the large figure; empty where `pairs` stand
    QString detail{}; ///< one line
    QString corner{}; ///< at the right of the caption: "16% free"
    struct Pair {
        Series series = Series::s1;
        QString text;
        friend bool operator==(const Pair&, const Pair&) = default;
    };
    std::vector<Pair> pairs{};            ///< two figures in place of one
    std::optional<Condition> condition{}; ///< a badge, with `word`
    QString word{};

    friend bool operator==(const TileText&, const TileText&) = default;
};

/// A line along the lower edge of a tile.
struct TileLine {
    Series series = Series::s1;
    std::vector<TimedValue> points;
    bool isDashed = false;

    friend bool operator==(const TileLine&, const TileLine&) = default;
};

/// A figure with its recent past along the lower edge; a button to its page. 116 high.
class MetricTile final : public QAbstractButton, public AccessibleSentence {
    Q_OBJECT
public:
    explicit MetricTile(std::string icon, QWidget* parent = nullptr);
    void set(TileText text);
    /// @param top  of the scale; absent: the largest of the points
    /// @param now  the right edge, in the time of the points
    void setLines(std::vector<TileLine> lines, std::optional<double> top, double now);
    void setNarrow(bool narrow); ///< the badge shows its glyph alone
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Button; }
    QString accessibleLabel() const override { return shown.caption; }
    QString accessibleSentence() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QRect linesRect() const;
    void placeParts();
    void drawLines(QPainter& painter, qreal corner) const;

    std::string icon;
    Badge* badge = nullptr;
    TileText shown;
    std::vector<TileLine> lines;
    std::optional<double> top;
    double now = 0;
    bool narrow = false;
};

} // namespace ostrivane
