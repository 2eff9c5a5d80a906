#pragma once

#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartData.hpp"

#include <QWidget>

#include <memory>

namespace ostrivane {

/// The last minutes of one or more figures, the newest at the right edge. Reads out under the pointer, and with Left,
/// Right, Home and End when it has focus. Tells assistive programs its name and, when asked, a sentence of its figures.
class LiveChart final : public QWidget {
public:
    /// @param name  of the metric: "CPU"
    explicit LiveChart(const QString& name, QWidget* parent = nullptr);
    ~LiveChart() override;

    void setAxis(ChartAxis axis);
    /// Lines lie on top of each other, the first at the bottom, each as a filled part.
    void setStacked(bool stacked);
    void setThreshold(std::optional<ChartThreshold> threshold);
    void setWindow(double seconds); ///< 300 at first
    /// One line less tall than wide, without labels: for a small chart beside figures.
    void setCompact(bool compact);
    /// @param now  the time of the right edge
    void setLines(std::vector<ChartLine> lines, double now);

    /// "CPU, last 5 minutes: now 31%, lowest 12%, highest 58%."
    QString description() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

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
