#pragma once

#include "app/pages/HistoryPageText.hpp"
#include "app/widgets/Type.hpp"

#include <QWidget>

namespace ostrivane {

/// The box beside the cursor of the history: when it is, the figures of that moment, and what ran.
class MomentReadout final : public QWidget {
public:
    explicit MomentReadout(QWidget* parent);
    void set(const MomentText& moment);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Entry {
        std::optional<Series> series;
        QString name;
        QString value;
        TypeRole role;
        bool isSpaced; ///< a gap above
    };
    std::vector<Entry> entries() const;

    MomentText shown;
};

} // namespace ostrivane
