#pragma once

#include <QObject>
#include <QTimer>

namespace ostrivane {

/// Whether the rows of a list keep their order: while the pointer is inside, something opened from it is open, or a key
/// was pressed in it within five seconds.
class OrderHold final : public QObject {
    Q_OBJECT
public:
    explicit OrderHold(QObject* parent);

    bool isHeld() const { return held; }
    void setPointerInside(bool inside);
    void keyPressed();
    /// A menu or dialog, until it is hidden or gone.
    void holdWhileOpen(QWidget* opened);
    /// The list cannot be seen any more.
    void release();

Q_SIGNALS:
    void changed(bool held);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void settle();

    bool held = false;
    bool pointerInside = false;
    QTimer sinceKey;
    QList<QObject*> open;
};

} // namespace ostrivane
