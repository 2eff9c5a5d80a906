#pragma once

#include <QAccessible>
#include <QRect>
#include <QString>

class QWidget;

namespace ostrivane {

/// What a widget that paints itself tells assistive programs. Asked for only when one of them asks, so that figures
/// which change all the time cost nothing and announce nothing.
class AccessibleSentence {
public:
    virtual QAccessible::Role accessibleRole() const = 0;
    /// What it is called where its `accessibleName` is empty.
    virtual QString accessibleLabel() const { return {}; }
    /// What it shows now, in words; empty where the name says it all.
    virtual QString accessibleSentence() const { return {}; }

protected:
    AccessibleSentence() = default;
    AccessibleSentence(const AccessibleSentence&) = default;
    AccessibleSentence& operator=(const AccessibleSentence&) = default;
    ~AccessibleSentence() = default;
};

/// A widget that paints several things which can be chosen: the parts of a control, the rows of a list.
class AccessibleItems : public AccessibleSentence {
public:
    virtual QAccessible::Role accessibleItemRole() const = 0;
    virtual int accessibleItemCount() const = 0;
    virtual QString accessibleItemText(int index) const = 0;
    virtual QRect accessibleItemRect(int index) const = 0; ///< within the widget
    virtual int accessibleCurrentItem() const = 0;         ///< -1: none
    virtual void activateItem(int index) = 0;

protected:
    AccessibleItems() = default;
    AccessibleItems(const AccessibleItems&) = default;
    AccessibleItems& operator=(const AccessibleItems&) = default;
    ~AccessibleItems() = default;
};

/// Gives a widget its name. A name that it has already is not announced again.
void nameForAccessibility(QWidget& widget, const QString& name);

/// Makes widgets that are an `AccessibleSentence` tell what they are. Once, ahead of the first window; again does
/// nothing.
void installAccessibility();

} // namespace ostrivane
