#include "app/pages/Freshness.hpp"

#include "app/model/AppModel.hpp"
#include "app/pages/PageContext.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"
#include "core/model/Formatters.hpp"

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double intervals = 2;
constexpr double shortestLook = 1;
constexpr double longestLook = 60;

} // namespace

QString updatedText(const SystemSnapshot& snapshot, Date now) {
    const double age = now - snapshot.timestamp;
    if (snapshot.interval <= 0 || age <= intervals * snapshot.interval)
        return {};
    return text("Updated " + Formatters::duration(age) + " ago");
}

Freshness::Freshness(PageContext& given, TextLabel* shownIn, QObject* parent)
    : QObject(parent), context(given), label(shownIn) {
    again.setSingleShot(true);
    connect(&again, &QTimer::timeout, this, &Freshness::look);
    label->hide();
}

void Freshness::look() {
    const SystemSnapshot& snapshot = *context.model.state().snapshot;
    const QString words = updatedText(snapshot, context.now());
    label->setText(words);
    label->setVisible(!words.isEmpty());
    const double seconds = std::clamp(intervals * snapshot.interval, shortestLook, longestLook) + shortestLook;
    again.start(static_cast<int>(seconds * 1000));
}

} // namespace ostrivane
