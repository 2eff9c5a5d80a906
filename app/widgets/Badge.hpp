#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QString>
#include <QWidget>

namespace ostrivane {

/// A condition as glyph and word, on its own ground.
class Badge final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit Badge(QWidget* parent = nullptr);
    void set(Condition condition, const QString& word);
    void setGlyphOnly(bool glyphOnly); ///< where there is no room; the word is then the tooltip
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    QAccessible::Role accessibleRole() const override { return QAccessible::StaticText; }
    QString accessibleLabel() const override { return word; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Condition condition = Condition::unknown;
    QString word;
    bool glyphOnly = false;
};

} // namespace ostrivane
