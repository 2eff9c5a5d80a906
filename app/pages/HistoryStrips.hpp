#pragma once

#include "app/pages/HistoryPageText.hpp"

#include <QWidget>

#include <optional>
#include <vector>

namespace ostrivane {

class HistoryChart;
class MomentReadout;

/// The name of a strip, its summary, and what its colours stand for.
class StripLabel final : public QWidget {
public:
    using QWidget::QWidget;
    void set(const HistoryStrip& strip);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Words {
        Series series = Series::s1;
        QString name;
        QString value;
        QString remark;
        QString detail;
        std::optional<Series> detailSeries;

        friend bool operator==(const Words&, const Words&) = default;
    };
    Words shown;
};

/// Figures of the machine below each other on one axis of time, with one cursor through all of them and one read-out.
class HistoryStrips final : public QWidget {
    Q_OBJECT
public:
    /// @param overlay  an ancestor, in which the read-out has room
    explicit HistoryStrips(QWidget* overlay);

    /// @param since  and `until`: seconds since 1970
    void set(const std::vector<HistoryStrip>& strips, double since, double until);
    void setBands(const std::vector<ChartBand>& bands);
    void setNarrow(bool narrow);
    /// What the read-out says; absent: it is not shown.
    void setMoment(const std::optional<MomentText>& moment);
    std::optional<double> cursor() const { return place; }

Q_SIGNALS:
    void cursorMoved(std::optional<double> time);

private:
    struct Strip {
        QWidget* holder = nullptr;
        QWidget* line = nullptr; ///< above; null for the first
        StripLabel* label = nullptr;
        HistoryChart* chart = nullptr;
        bool isShown = false;
    };
    void moveCursor(std::optional<double> time);
    void placeReadout();

    std::vector<Strip> strips; ///< by metric
    QWidget* room;
    MomentReadout* readout = nullptr;
    std::optional<double> place;
    std::vector<ChartBand> stretches;
    double from = 0;
    double to = 0;
};

} // namespace ostrivane
