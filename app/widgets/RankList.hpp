#pragma once

#include "app/widgets/RowList.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// An application in a ranking.
struct RankRow {
    std::string key;
    std::string name;
    std::optional<std::string> bundlePath{};
    QString figure{};
    double share = 0;    ///< of the largest, 0 to 1
    bool isGone = false; ///< it has ended; its row stays for whoever points at it

    friend bool operator==(const RankRow&, const RankRow&) = default;
};

/// Applications by a figure: icon, name, a bar, the figure. It always has room for `places` rows.
class RankList final : public RowList {
    Q_OBJECT
public:
    RankList(const QString& name, int places, Series series, QWidget* parent = nullptr);
    void set(std::vector<RankRow> rows);
    void setEmptyText(const QString& words); ///< in place of rows, where there are none
    const std::vector<RankRow>& rows() const { return shown; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    int rowCount() const override { return static_cast<int>(shown.size()); }
    QRect rowRect(int row) const override;
    void paintRow(QPainter& painter, const QRect& rect, int row) override;
    void paintRest(QPainter& painter) override;
    QString rowText(int row) const override;

private:
    std::vector<RankRow> shown;
    QString emptyText;
    int places;
    Series series;
};

} // namespace ostrivane
