#pragma once

#include <QFocusFrame>
#include <QObject>
#include <QPointer>

namespace ostrivane {

/// Knows whether the focus came by the keyboard, and keeps one ring around the widget that has it then. The ring is a
/// widget of its own above its neighbours, for it lies outside of what it surrounds.
class FocusRing final : public QObject {
public:
    /// The one of the application, made when it is first asked for.
    static FocusRing& instance();

    /// @param radius  of the corners of `widget`, at a base of 13 pixels
    static void give(QWidget& widget, double radius);
    bool isByKeyboard() const { return byKeyboard; }

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    explicit FocusRing(QObject* parent);
    void surround(QWidget* widget);

    QPointer<QFocusFrame> frame;
    bool byKeyboard = false;
    bool lastInputWasKey = false;
};

} // namespace ostrivane
