#pragma once

#include "app/pages/PageContext.hpp"
#include "core/history/HistoryRange.hpp"

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>
#include <string>

namespace ostrivane {

class HistoryStore;

/// Rows of the history over a range: asked for when the range is chosen, and then once a minute while somebody looks.
class RangeFeed : public QObject {
    Q_OBJECT
public:
    /// Absent: no rows are wanted (the live view).
    void setRange(std::optional<HistoryRange> range);
    void setAwake(bool awake);

    /// Whether the rows are those of the present question.
    bool isReady() const { return ready; }
    /// Why there are no rows though the history may hold some.
    const std::optional<std::string>& problem() const { return failure; }
    /// Bounds of the rows, in seconds since 1970; before an answer, of those that are asked for.
    double since() const { return from; }
    double until() const { return to; }

Q_SIGNALS:
    void changed();

protected:
    RangeFeed(PageContext& context, std::optional<HistoryRange> range, QObject* parent);

    std::optional<HistoryRange> chosenRange() const { return chosen; }
    /// Another question than before, whose rows are forgotten.
    void begin();

    virtual bool isWanted() const { return true; }
    virtual void forget() = 0;
    /// Asks for the rows; what it returns is called on the main thread when they are there, to take them over.
    virtual std::function<void()> ask(HistoryStore& history, Date since, Date until) = 0;

private:
    void askAgain();

    PageContext& context;
    std::optional<HistoryRange> chosen;
    std::optional<std::string> failure;
    bool ready = false;
    bool awake = false;
    double from = 0;
    double to = 0;
    int question = 0; ///< a late answer to an older one is dropped
    QTimer again;
};

} // namespace ostrivane
