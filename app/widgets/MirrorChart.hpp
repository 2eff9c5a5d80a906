#pragma once

#include "app/widgets/ChartAxis.hpp"
#include "app/widgets/ChartData.hpp"

#include <QWidget>

#include <memory>

namespace ostrivane {

/// Two directions of traffic over the last minutes: one up from a middle line, the other down, on one scale. Each half
/// is as tall as it needs, at least a quarter.
class MirrorChart final : public QWidget {
public:
    explicit MirrorChart(const QString& name, QWidget* parent = nullptr);
    ~MirrorChart() override;

    void setAxis(ChartAxis axis);
    void setLines(ChartLine up, ChartLine down, double now);
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
