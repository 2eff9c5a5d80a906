#pragma once

#include <QStringList>
#include <QWidget>

namespace ostrivane {

/// One of a few choices, all in view. Left and Right step.
class SegmentedControl final : public QWidget {
    Q_OBJECT
public:
    SegmentedControl(const QString& name, const QStringList& choices, QWidget* parent = nullptr);
    int index() const { return chosen; }
    const QStringList& choices() const { return titles; }
    void setIndex(int index); ///< signals nothing
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The user chose another one.
    void indexChosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QRect segment(int index) const;
    int segmentAt(const QPoint& point) const;
    void choose(int index);

    QStringList titles;
    int chosen = 0;
    int hovered = -1;
    bool showsFocus = false;
};

} // namespace ostrivane
