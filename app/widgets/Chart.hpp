#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/ChartData.hpp"
#include "app/widgets/ChartGrid.hpp"
#include "app/widgets/ChartPaint.hpp"
#include "app/widgets/ChartReadout.hpp"

#include <QPixmap>
#include <QWidget>

#include <optional>
#include <vector>

namespace ostrivane {

/// What all charts are: a plot with its grid and labels, a cursor that the pointer and the keys move, and a sentence
/// for assistive programs. The grid is kept as a picture; only what stands in the plot is painted as figures change.
class Chart : public QWidget, public AccessibleSentence {
public:
    /// A sentence of the figures, and of the moment under the cursor. Made when asked.
    QString description() const;
    QAccessible::Role accessibleRole() const override { return QAccessible::Chart; }
    QString accessibleSentence() const override { return description(); }
    /// The moment that is read out, in the time of the points.
    std::optional<double> cursor() const { return cursorTime; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    Chart(const QString& name, QWidget* parent);

    /// The bounds of what is shown.
    struct View {
        double since = 0;
        double until = 1;
        double lower = 0;
        double upper = 1;

        friend bool operator==(const View&, const View&) = default;
    };

    virtual QString summary() const = 0;
    virtual ChartGrid makeGrid(GridDetail detail) const = 0;
    virtual void drawLines(QPainter& painter, const ChartSpace& space) const = 0;
    /// Of what is in view, in order.
    virtual std::vector<double> sampleTimes() const = 0;
    virtual ChartReading reading(double time) const = 0;
    /// The pointer or a key moved the cursor, or took it away.
    virtual void userMovedCursor() {}

    /// What is shown changed: takes in the bounds, and makes the grid anew where its marks changed.
    void setView(const View& view);
    void setShowsTimes(bool shows);
    void setShowsLabels(bool shows);
    void setShowsReadout(bool shows);
    /// Labels at the side get room for this text at least, so that charts one below the other agree.
    void setReservedLabel(const QString& widest);
    void placeCursor(std::optional<double> time);
    ChartSpace space() const;
    const View& view() const { return bounds; }

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    GridDetail detail() const;
    int timesHeight() const;
    void refreshGrid();
    void updatePlot();
    QPixmap emptyPicture() const;
    void drawFigures(QPainter& painter) const;
    void dropPictures();
    void followPointer();
    void moveCursor(std::optional<double> time);

    View bounds;
    ChartGrid grid;
    QPixmap backdrop; ///< grid and labels; null: to be drawn
    QPixmap scene;    ///< all below the cursor while there is one, so that it moves at no cost; null: to be drawn
    QString reservedLabel;
    std::optional<double> cursorTime;
    std::optional<qreal> pointer; ///< where the pointer is, while it moves the cursor
    bool isByKeys = false;        ///< the cursor was moved by keys
    bool showsTimes = true;
    bool showsLabels = true;
    bool showsReadout = true;
};

} // namespace ostrivane
