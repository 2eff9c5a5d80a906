#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

#include <vector>

class QPainter;
class QRectF;

namespace ostrivane {

struct BarPart {
    Series series = Series::s1;
    double share = 0; ///< of the whole bar, 0 to 1
    QString name{};   ///< for assistive programs and the tooltip: "App 16.9 GB"

    friend bool operator==(const BarPart&, const BarPart&) = default;
};

/// Shares of a whole in a row; what no part takes is track.
class Bar final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit Bar(int height = 6, QWidget* parent = nullptr);
    void set(std::vector<BarPart> parts, const QString& name);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Chart; }
    QString accessibleSentence() const override;

    /// A bar of one part, as it stands in a table's cell.
    static void draw(QPainter& painter, const QRectF& rect, double share, Series series);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    std::vector<BarPart> parts;
    int height;
};

} // namespace ostrivane
