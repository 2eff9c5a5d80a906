#pragma once

#include <QElapsedTimer>
#include <QWidget>

class QPainter;

namespace ostrivane {

/// A few rows one below the other, painted, each of which leads somewhere: a click, Enter or Space activates one; Up,
/// Down, Home and End move. What a row is, its children say.
class RowList : public QWidget {
    Q_OBJECT
public:
    explicit RowList(const QString& name, QWidget* parent = nullptr);

    /// Whether rows should keep their places: the pointer is inside, or a key was pressed within 5 seconds.
    bool isHeld() const;
    /// The row where the keyboard is, in words; empty without rows.
    QString currentText() const;

Q_SIGNALS:
    void activated(int row);

protected:
    virtual int rowCount() const = 0;
    virtual QRect rowRect(int row) const = 0;
    virtual void paintRow(QPainter& painter, const QRect& rect, int row) = 0;
    /// For assistive programs.
    virtual QString rowText(int row) const = 0;
    /// What stands beside the rows, such as heads of columns.
    virtual void paintRest(QPainter& /*painter*/) {}

    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    int textMargin() const; ///< between the widget's side and what stands in it

private:
    int rowAt(const QPoint& point) const;
    void updateRow(int row);
    void setHovered(int row);
    void setCurrent(int row);

    int hovered = -1;
    int pressed = -1;
    int current = 0;
    QElapsedTimer sinceKey;
};

} // namespace ostrivane
