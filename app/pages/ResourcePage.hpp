#pragma once

#include "app/model/LiveSeries.hpp"
#include "app/pages/HistoryFeed.hpp"
#include "app/pages/HistoryPoints.hpp"
#include "app/pages/PageView.hpp"
#include "app/widgets/ChartData.hpp"

#include <QString>

class QVBoxLayout;

namespace ostrivane {

class Banner;
class RangePicker;
class ResourceChart;

/// A page about one part of the machine: a picker of ranges in the header, and charts that show the last minutes or the
/// past, whichever was picked. Scrolls as a whole.
class ResourcePage : public PageView {
    Q_OBJECT
public:
    ResourcePage(Page page, PageContext& context, QWidget* parent = nullptr);

protected:
    /// Sets the charts and what says over how long they reach: after a sample while live, and whenever the rows of the
    /// picked range changed.
    virtual void refreshCharts() = 0;

    void wake() override;
    void sleep() override;

    /// Where the page's cards go, from the top down.
    QVBoxLayout* body() const { return cards; }
    bool isLive() const;
    /// "Last 5 minutes, every second", "Last 12 hours".
    QString reach() const;
    /// Without ranges where there is no figure to look back on.
    void setRangesShown(bool shown);
    /// Seconds between the two latest readings; 0 while there is only one.
    double interval() const;

    /// One line of a chart, both of its last minutes and of its past.
    struct Line {
        Series series = Series::s1;
        QString name;
        LiveKey live = LiveKey::cpu;
        RowFigure past;
        RowFigure peak{}; ///< of the past; empty: none is kept
        double scale = 1; ///< what the values are multiplied with
        bool isDashed = false;
        std::function<QString(double)> text{}; ///< of a value after scaling
    };
    void draw(ResourceChart& chart, const std::vector<Line>& lines) const;

private:
    void showPast();

    RangePicker* picker = nullptr;
    HistoryFeed* feed = nullptr;
    Banner* problem = nullptr;
    QVBoxLayout* cards = nullptr;
};

} // namespace ostrivane
