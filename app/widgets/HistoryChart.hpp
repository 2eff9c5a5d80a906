#pragma once

#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartData.hpp"

#include <QWidget>

#include <memory>
#include <optional>

namespace ostrivane {

/// Hours or days of one or more figures: means as an area and a line, peaks as a thin line, gaps as gaps (where two
/// points lie more than 2.5 times the longer one's length apart). With more than one point in a column of pixels the
/// column's least and greatest are drawn. Reads out like `LiveChart`.
class HistoryChart final : public QWidget {
    Q_OBJECT
public:
    explicit HistoryChart(const QString& name, QWidget* parent = nullptr);
    ~HistoryChart() override;

    void setAxis(ChartAxis axis);
    /// Both in seconds since 1970; the right edge is `until`.
    void setRange(double since, double until);
    void setLines(std::vector<HistoryLine> lines);
    void setStacked(bool stacked);
    void setThreshold(std::optional<ChartThreshold> threshold);
    void setBands(std::vector<ChartBand> bands);
    void setShowsTimes(bool shows);   ///< labels of time below; true at first
    void setShowsReadout(bool shows); ///< a box of its own beside the cursor; true at first
    /// For charts on one axis of time: shows the cursor there, without signalling.
    void setCursor(std::optional<double> time);
    std::optional<double> cursor() const;
    QString description() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The pointer or a key moved the cursor to a time, or took it away.
    void cursorMoved(std::optional<double> time);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct Parts;
    std::unique_ptr<Parts> parts;
};

} // namespace ostrivane
