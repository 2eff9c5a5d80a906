#pragma once

#include <QProxyStyle>

namespace ostrivane {

/// Fusion, with the common controls painted from the theme: menus, scroll bars, combo boxes, line edits, spin boxes,
/// check boxes, tooltips, focus rings.
class Style final : public QProxyStyle {
public:
    Style();

    void polish(QWidget* widget) override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;

    /// Has a ring drawn around `widget`, whose corners have that radius, while it has focus by the keyboard. Standard
    /// controls have one without being asked.
    static void giveFocusRing(QWidget& widget, double radius);
    /// A ring of 2 pixels around `rect`, 1 pixel away from it. Draw it where a widget has focus by the keyboard.
    static void drawFocusRing(QPainter& painter, const QRectF& rect, qreal radius);
    /// Whether a widget has focus, and got it by the keyboard.
    static bool showsFocus(const QWidget& widget);
};

} // namespace ostrivane
