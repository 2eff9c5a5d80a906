#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

#include <vector>

namespace ostrivane {

/// One core: its short name ("P4"), its load now and its last 60 loads.
struct CoreCell {
    QString label;
    QString value; ///< "62%"
    Series series = Series::s1;
    std::vector<double> loads; ///< fractions, oldest first

    friend bool operator==(const CoreCell&, const CoreCell&) = default;
};

/// Cores in rows of `perRow`, painted by one widget. Only cells that changed are painted anew. Where cells are narrow
/// the names stand above the figures.
class CoreGrid final : public QWidget, public AccessibleSentence {
public:
    explicit CoreGrid(QWidget* parent = nullptr);
    void set(std::vector<CoreCell> cells);
    void setPerRow(int perRow);
    QAccessible::Role accessibleRole() const override { return QAccessible::Chart; }
    QString accessibleSentence() const override; ///< "E0 41%, E1 38%."
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void measure();
    int cellWidth(int width) const;
    /// Whether names stand above the figures, since cells of a grid that wide have no room for both in a line.
    bool isTwoLined(int width) const;
    int cellHeight(int width) const;
    QRect cellRect(std::size_t index, int height) const;

    void drawCell(QPainter& painter, const QRectF& cell, const CoreCell& core, bool twoLined) const;

    std::vector<CoreCell> cells;
    int perRow = 12;
    int widestLabel = 0; ///< pixels
};

} // namespace ostrivane
