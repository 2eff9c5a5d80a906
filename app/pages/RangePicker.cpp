#include "app/pages/RangePicker.hpp"

#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Strings.hpp"
#include "core/model/Formatters.hpp"

#include <QHBoxLayout>

#include <cmath>
#include <cstddef>

namespace ostrivane {

namespace {

constexpr auto ranges = rawTexts(EnumTag<HistoryRange>{});

QStringList titles() {
    QStringList list{QStringLiteral("Live")};
    for (const auto& range : ranges)
        list << text(range.second);
    return list;
}

} // namespace

QString everyText(double interval) {
    constexpr double shortest = 0.05;
    constexpr double exact = 0.75; // below, tenths are told
    if (!(interval >= shortest) || !std::isfinite(interval))
        return {};
    // A reading takes its time too, and the words must not change with each.
    const double told = interval < exact ? interval : std::round(interval * 2) / 2;
    if (told == 1)
        return QStringLiteral("every second");
    const int decimals = told == std::floor(told) ? 0 : 1;
    return QStringLiteral("every %1 s").arg(text(Formatters::decimal(told, decimals)));
}

QString rangeText(std::optional<HistoryRange> range, double interval) {
    if (range == HistoryRange::hour1)
        return QStringLiteral("Last hour");
    if (range)
        return QStringLiteral("Last %1").arg(text(label(*range)));
    const QString every = everyText(interval);
    return QStringLiteral("Last 5 minutes") + (every.isEmpty() ? every : QStringLiteral(", ") + every);
}

RangePicker::RangePicker(QWidget* parent) : QWidget(parent) {
    control = new SegmentedControl(QStringLiteral("Time range"), titles(), this);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(control);
    connect(control, &SegmentedControl::indexChosen, this, [this] { Q_EMIT rangeChosen(); });
}

std::optional<HistoryRange> RangePicker::range() const {
    const int index = control->index();
    if (index < 1 || static_cast<std::size_t>(index) > ranges.size())
        return std::nullopt;
    return ranges[static_cast<std::size_t>(index) - 1].first;
}

} // namespace ostrivane
