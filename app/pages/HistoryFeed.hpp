#pragma once

#include "app/pages/PageContext.hpp"
#include "core/history/HistoryRange.hpp"
#include "core/history/SystemRow.hpp"

#include <QObject>
#include <QTimer>

#include <optional>
#include <vector>

namespace ostrivane {

/// The machine's rows over a range: asked for when the range is chosen, and then once a minute while somebody looks.
class HistoryFeed final : public QObject {
    Q_OBJECT
public:
    HistoryFeed(PageContext& context, QObject* parent);

    /// Absent: no rows are wanted (the live view).
    void setRange(std::optional<HistoryRange> range);
    std::optional<HistoryRange> range() const { return chosen; }
    void setAwake(bool awake);

    /// Oldest first, of what was answered last.
    const std::vector<SystemRow>& rows() const { return answered; }
    /// Whether the rows are those of the present range.
    bool isReady() const { return ready; }
    /// Bounds of the rows, in seconds since 1970.
    double since() const { return from; }
    double until() const { return to; }

Q_SIGNALS:
    void changed();

private:
    void ask();

    PageContext& context;
    std::optional<HistoryRange> chosen;
    std::vector<SystemRow> answered;
    bool ready = false;
    bool awake = false;
    double from = 0;
    double to = 0;
    int question = 0; ///< a late answer to an older one is dropped
    QTimer again;
};

} // namespace ostrivane
