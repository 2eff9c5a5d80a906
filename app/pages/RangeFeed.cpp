#include "app/pages/RangeFeed.hpp"

#include "app/model/AppModel.hpp"

#include <QPointer>

#include <chrono>
#include <utility>

namespace ostrivane {

RangeFeed::RangeFeed(PageContext& given, std::optional<HistoryRange> range, QObject* parent)
    : QObject(parent), context(given), chosen(range) {
    again.setInterval(std::chrono::minutes(1));
    again.setTimerType(Qt::VeryCoarseTimer);
    connect(&again, &QTimer::timeout, this, &RangeFeed::askAgain);
}

void RangeFeed::setRange(std::optional<HistoryRange> range) {
    if (range == chosen)
        return;
    chosen = range;
    begin();
}

void RangeFeed::setAwake(bool isAwake) {
    if (isAwake == awake)
        return;
    awake = isAwake;
    askAgain();
}

void RangeFeed::begin() {
    forget();
    ready = false;
    failure.reset();
    ++question;
    if (chosen) {
        to = context.now().seconds;
        from = to - seconds(*chosen);
    }
    askAgain();
    Q_EMIT changed();
}

void RangeFeed::askAgain() {
    if (!awake || !chosen || !isWanted()) {
        again.stop();
        return;
    }
    again.start();
    const Date until = context.now();
    const Date since{until.seconds - seconds(*chosen)};
    HistoryStore& history = context.model.history();
    std::function<void()> takeOver = ask(history, since, until);
    // Answered behind the rows, and about them.
    history.readProblem([post = context.onMainThread, feed = QPointer<RangeFeed>(this), mine = ++question, since, until,
                         takeOver = std::move(takeOver)](std::optional<std::string> problem) {
        post([feed, mine, since, until, takeOver, problem = std::move(problem)] {
            if (!feed || feed->question != mine)
                return;
            takeOver();
            feed->failure = problem;
            feed->from = since.seconds;
            feed->to = until.seconds;
            feed->ready = true;
            Q_EMIT feed->changed();
        });
    });
}

} // namespace ostrivane
