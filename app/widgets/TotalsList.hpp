#pragma once

#include "app/widgets/RowList.hpp"

#include <QString>

#include <array>
#include <vector>

namespace ostrivane {

/// A figure summed over three spans of time, in the order of the columns.
struct TotalsRow {
    QString name;
    std::array<QString, 3> figures{};

    friend bool operator==(const TotalsRow&, const TotalsRow&) = default;
};

/// Sums in columns below their heads; the rows share the height. Columns whose figures do not fit are left out, the
/// middle one first: figures are never cut, but heads are.
class TotalsList final : public RowList {
    Q_OBJECT
public:
    TotalsList(const QString& name, std::array<QString, 3> heads, QWidget* parent = nullptr);
    void set(std::vector<TotalsRow> rows);
    int visibleColumns() const { return static_cast<int>(columns().visible.size()); }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    int rowCount() const override { return static_cast<int>(shown.size()); }
    QRect rowRect(int row) const override;
    void paintRow(QPainter& painter, const QRect& rect, int row) override;
    void paintRest(QPainter& painter) override;
    QString rowText(int row) const override;

private:
    struct Columns {
        std::vector<std::size_t> visible;
        int name = 0;                ///< width of the names
        std::array<int, 3> widths{}; ///< of the others, by column
    };
    Columns columns() const;
    void paintCells(QPainter& painter, const QRect& rect, const std::array<QString, 3>& cells) const;

    std::array<QString, 3> heads;
    std::vector<TotalsRow> shown;
};

} // namespace ostrivane
