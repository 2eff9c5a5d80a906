#include "app/pages/AppHistoryFeed.hpp"

#include "app/model/AppModel.hpp"

#include <QPointer>

#include <chrono>
#include <memory>
#include <utility>

namespace ostrivane {

AppHistoryFeed::AppHistoryFeed(PageContext& given, HistoryRange range, QObject* parent)
    : QObject(parent), context(given), chosen(range) {
    again.setInterval(std::chrono::minutes(1));
    again.setTimerType(Qt::VeryCoarseTimer);
    connect(&again, &QTimer::timeout, this, &AppHistoryFeed::ask);
}

void AppHistoryFeed::setApp(std::optional<std::string> next) {
    if (next == key)
        return;
    key = std::move(next);
    begin();
}

void AppHistoryFeed::setRange(HistoryRange range) {
    if (range == chosen)
        return;
    chosen = range;
    begin();
}

void AppHistoryFeed::setAwake(bool isAwake) {
    if (isAwake == awake)
        return;
    awake = isAwake;
    ask();
}

void AppHistoryFeed::begin() {
    answered.reset();
    failure.reset();
    ++question;
    to = context.now().seconds;
    from = to - seconds(chosen);
    ask();
    Q_EMIT changed();
}

void AppHistoryFeed::ask() {
    if (!awake || !key) {
        again.stop();
        return;
    }
    again.start();
    struct Reply {
        std::vector<AppRow> rows;
        std::optional<std::string> problem;
    };
    const Date until = context.now();
    const Date since{until.seconds - seconds(chosen)};
    const auto reply = std::make_shared<Reply>();
    HistoryStore& history = context.model.history();
    history.appRows(*key, since, [reply](std::vector<AppRow> rows) { reply->rows = std::move(rows); });
    // Answered behind the rows, and about them.
    history.readProblem([post = context.onMainThread, feed = QPointer<AppHistoryFeed>(this), mine = ++question, since,
                         until, reply](std::optional<std::string> problem) {
        reply->problem = std::move(problem);
        post([feed, mine, since, until, reply] {
            if (!feed || feed->question != mine)
                return;
            feed->answered = std::move(reply->rows);
            feed->failure = std::move(reply->problem);
            feed->from = since.seconds;
            feed->to = until.seconds;
            Q_EMIT feed->changed();
        });
    });
}

} // namespace ostrivane
