#pragma once

#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

#include <vector>

namespace ostrivane {

/// One core: its short name ("P4"), its load now and its last 60 loads.
struct CoreCell {
    QString label;
    QString value; ///< "62%"
    Series series = Series::s1;
    std::vector<double> loads; ///< fractions, oldest first

    friend bool operator==(const CoreCell&, const CoreCell&) = default;
};

/// Cores in rows of `perRow`, painted by one widget. Only cells that changed are painted anew.
class CoreGrid final : public QWidget {
public:
    explicit CoreGrid(QWidget* parent = nullptr);
    void set(std::vector<CoreCell> cells);
    void setPerRow(int perRow);
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect cellRect(std::size_t index) const;

    std::vector<CoreCell> cells;
    int perRow = 12;
};

} // namespace ostrivane
