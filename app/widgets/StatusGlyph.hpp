#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QRectF>
#include <QString>
#include <QWidget>

#include "core/judgement/AlertSeverity.hpp"
#include "core/judgement/HealthCategory.hpp"

class QPainter;

namespace ostrivane {

Condition conditionOf(HealthCategory::Status status);
Condition conditionOf(AlertSeverity severity);

/// Good: a disc with a tick; elevated: a triangle; high: an octagon (both with "!"); unknown: a ring with a dash; info:
/// a disc with "i".
void drawStatusGlyph(QPainter& painter, const QRectF& rect, Condition condition);

/// The same as a widget. `word` is what assistive programs are told.
class StatusGlyph final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit StatusGlyph(Condition condition, int size = 14, QWidget* parent = nullptr);
    void set(Condition condition, const QString& word);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    QAccessible::Role accessibleRole() const override { return QAccessible::Graphic; }
    QString accessibleLabel() const override { return word; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Condition condition;
    QString word;
    int size;
};

} // namespace ostrivane
