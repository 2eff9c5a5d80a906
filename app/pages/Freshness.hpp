#pragma once

#include "core/model/SystemSnapshot.hpp"

#include <QObject>
#include <QString>
#include <QTimer>

namespace ostrivane {

struct PageContext;
class TextLabel;

/// "Updated 12s ago" of a snapshot older than two of its intervals; empty of a fresher one, and before there is any.
QString updatedText(const SystemSnapshot& snapshot, Date now);

/// Says in a label when the figures on a page have grown old. While they come, it costs a timer that never rings.
class Freshness final : public QObject {
    Q_OBJECT
public:
    Freshness(PageContext& context, TextLabel* label, QObject* parent);
    /// The page took a snapshot in, or woke.
    void look();
    void sleep() { again.stop(); }

private:
    PageContext& context;
    TextLabel* label;
    QTimer again;
};

} // namespace ostrivane
