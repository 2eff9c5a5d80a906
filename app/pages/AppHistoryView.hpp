#pragma once

#include "app/pages/PageContext.hpp"

#include <QWidget>

#include <optional>
#include <string>

class QBoxLayout;

namespace ostrivane {

class AppHistoryFeed;
class Banner;
class HistoryChart;
class Legend;
class SegmentedControl;
class TextLabel;

/// What the history holds of one application: its processor use and its memory over hours or days, and their sums.
class AppHistoryView final : public QWidget {
public:
    explicit AppHistoryView(PageContext& context, QWidget* parent = nullptr);

    /// Absent: nothing is asked.
    void setApp(std::optional<std::string> key);
    void setAwake(bool awake);
    /// The charts beside each other in place of one below the other.
    void setSideBySide(bool sideBySide);

private:
    void showRows();

    AppHistoryFeed* feed = nullptr;
    Banner* banner = nullptr;
    TextLabel* cpuTitle = nullptr;
    TextLabel* memoryTitle = nullptr;
    TextLabel* note = nullptr;
    SegmentedControl* picker = nullptr;
    HistoryChart* cpu = nullptr;
    HistoryChart* memory = nullptr;
    QWidget* memoryBlock = nullptr;
    QBoxLayout* blocks = nullptr;
    Legend* figures = nullptr;
};

} // namespace ostrivane
