#pragma once

#include "app/widgets/Accessibility.hpp"

#include <QString>
#include <QWidget>

namespace ostrivane {

/// A word on a neutral ground, such as "Vite".
class Tag final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit Tag(const QString& word = {}, QWidget* parent = nullptr);
    void setWord(const QString& word); ///< hidden without one
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    QAccessible::Role accessibleRole() const override { return QAccessible::StaticText; }
    QString accessibleLabel() const override { return word; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString word;
};

} // namespace ostrivane
