#pragma once

#include "app/pages/PageContext.hpp"
#include "core/history/AppRow.hpp"
#include "core/history/HistoryRange.hpp"

#include <QObject>
#include <QTimer>

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// The rows of one application over a range: asked for when either is chosen, and then once a minute while somebody
/// looks.
class AppHistoryFeed final : public QObject {
    Q_OBJECT
public:
    AppHistoryFeed(PageContext& context, HistoryRange range, QObject* parent);

    /// Absent: no rows are wanted.
    void setApp(std::optional<std::string> key);
    void setRange(HistoryRange range);
    HistoryRange range() const { return chosen; }
    void setAwake(bool awake);

    /// Oldest first, of what was answered last; null until the present question was answered once.
    const std::vector<AppRow>* rows() const { return answered ? &*answered : nullptr; }
    /// Why there are no rows though the history may hold some.
    const std::optional<std::string>& problem() const { return failure; }
    /// Bounds of the rows, in seconds since 1970.
    double since() const { return from; }
    double until() const { return to; }

Q_SIGNALS:
    void changed();

private:
    void begin();
    void ask();

    PageContext& context;
    std::optional<std::string> key;
    HistoryRange chosen;
    std::optional<std::vector<AppRow>> answered;
    std::optional<std::string> failure;
    bool awake = false;
    double from = 0;
    double to = 0;
    int question = 0; ///< a late answer to an older one is dropped
    QTimer again;
};

} // namespace ostrivane
