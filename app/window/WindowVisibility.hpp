#pragma once

#include <QObject>
#include <qwindowdefs.h>

class QWidget;
class QWindow;

namespace ostrivane {

/// Tells of windows that are wholly covered by others, where the toolkit does not: by its window's id, on the main
/// thread. Null where the toolkit tells by itself, or the system does not.
class CoveredWindows : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    /// Begins to watch a native window; whether it is covered now is told by `changed`.
    virtual void watch(QWindow& window) = 0;

Q_SIGNALS:
    void changed(bool isCovered);
};
CoveredWindows* makeCoveredWindows(QObject* parent);

/// Whether anything of a window can be seen: it is shown, not minimised, and not wholly behind others where the system
/// tells of that (macOS, Wayland, X11 without a compositor).
class WindowVisibility final : public QObject {
    Q_OBJECT
public:
    /// @param widget  a window
    explicit WindowVisibility(QWidget* widget);

    bool canBeSeen() const { return seen; }

Q_SIGNALS:
    void changed(bool canBeSeen);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void settle();
    void watchHandle();

    QWidget* widget;
    QWindow* handle = nullptr;
    WId native = 0; ///< of `handle`
    CoveredWindows* covered = nullptr;
    bool isCovered = false;
    bool seen = false;
};

} // namespace ostrivane
