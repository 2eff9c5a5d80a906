#include "app/pages/HistoryFeed.hpp"

#include "app/model/AppModel.hpp"

#include <QPointer>

#include <chrono>
#include <utility>

namespace ostrivane {

HistoryFeed::HistoryFeed(PageContext& given, QObject* parent) : QObject(parent), context(given) {
    again.setInterval(std::chrono::minutes(1));
    again.setTimerType(Qt::VeryCoarseTimer);
    connect(&again, &QTimer::timeout, this, &HistoryFeed::ask);
}

void HistoryFeed::setRange(std::optional<HistoryRange> range) {
    if (range == chosen)
        return;
    chosen = range;
    ready = false;
    answered.clear();
    ++question;
    ask();
    Q_EMIT changed();
}

void HistoryFeed::setAwake(bool isAwake) {
    if (isAwake == awake)
        return;
    awake = isAwake;
    ask();
}

void HistoryFeed::ask() {
    if (!awake || !chosen) {
        again.stop();
        return;
    }
    again.start();
    const Date until = context.now();
    const Date since{until.seconds - seconds(*chosen)};
    const int mine = ++question;
    context.model.history().systemRows(since, until,
                                       [post = context.onMainThread, feed = QPointer<HistoryFeed>(this), mine, since,
                                        until](std::vector<SystemRow> rows) mutable {
                                           post([feed, mine, since, until, rows = std::move(rows)]() mutable {
                                               if (!feed || feed->question != mine)
                                                   return;
                                               feed->answered = std::move(rows);
                                               feed->from = since.seconds;
                                               feed->to = until.seconds;
                                               feed->ready = true;
                                               Q_EMIT feed->changed();
                                           });
                                       });
}

} // namespace ostrivane
