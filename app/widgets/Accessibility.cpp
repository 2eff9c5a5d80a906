#include "app/widgets/Accessibility.hpp"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QWidget>

#include <vector>

namespace ostrivane {

namespace {

/// A widget, in the words of its own.
class SpokenWidget : public QAccessibleWidget {
public:
    SpokenWidget(QWidget* widget, const AccessibleSentence& told)
        : QAccessibleWidget(widget, told.accessibleRole()), words(&told) {}

    QAccessible::Role role() const override { return words->accessibleRole(); }

    QString text(QAccessible::Text kind) const override {
        const QString given = QAccessibleWidget::text(kind);
        switch (kind) {
        case QAccessible::Name:
            return widget()->accessibleName().isEmpty() ? words->accessibleLabel() : widget()->accessibleName();
        case QAccessible::Description:
            return given.isEmpty() || given == widget()->toolTip() ? words->accessibleSentence() : given;
        case QAccessible::Value:
            return words->accessibleSentence();
        default:
            return given;
        }
    }

    QStringList actionNames() const override {
        const QStringList given = QAccessibleWidget::actionNames();
        return qobject_cast<QAbstractButton*>(widget()) ? QStringList(pressAction()) + given : given;
    }
    void doAction(const QString& action) override {
        auto* button = qobject_cast<QAbstractButton*>(widget());
        if (button && action == pressAction())
            button->click();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    const AccessibleSentence* words; // the widget itself, which outlives its interface
};

/// One of the things that a widget paints.
class SpokenItem final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    SpokenItem(QWidget* of, AccessibleItems& told, int which) : owner(of), items(&told), index(which) {}

    bool isValid() const override { return index < items->accessibleItemCount(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(owner); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return items->accessibleItemRole(); }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && isValid() ? items->accessibleItemText(index) : QString();
    }
    QRect rect() const override {
        const QRect within = isValid() ? items->accessibleItemRect(index) : QRect();
        return {owner->mapToGlobal(within.topLeft()), within.size()};
    }
    QAccessible::State state() const override {
        QAccessible::State now;
        const bool isCurrent = items->accessibleCurrentItem() == index;
        now.focusable = true;
        now.selectable = true;
        now.selected = isCurrent;
        now.checkable = items->accessibleItemRole() == QAccessible::RadioButton;
        now.checked = now.checkable && isCurrent;
        now.focused = isCurrent && owner->hasFocus();
        now.disabled = !owner->isEnabled();
        now.invisible = !owner->isVisible();
        return now;
    }
    void* interface_cast(QAccessible::InterfaceType kind) override {
        return kind == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& action) override {
        if (action == pressAction() && isValid())
            items->activateItem(index);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QWidget* owner;
    AccessibleItems* items;
    int index;
};

class SpokenItems final : public SpokenWidget {
public:
    SpokenItems(QWidget* widget, AccessibleItems& told) : SpokenWidget(widget, told), items(&told) {}
    ~SpokenItems() override {
        for (const QAccessible::Id id : made)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return items->accessibleItemCount(); }
    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount())
            return nullptr;
        while (made.size() <= static_cast<std::size_t>(index))
            made.push_back(QAccessible::registerAccessibleInterface(
                new SpokenItem(widget(), *items, static_cast<int>(made.size()))));
        return QAccessible::accessibleInterface(made[static_cast<std::size_t>(index)]);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (std::size_t index = 0; index < made.size(); ++index)
            if (QAccessible::accessibleInterface(made[index]) == child)
                return static_cast<int>(index);
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint point = widget()->mapFromGlobal(QPoint(x, y));
        for (int index = 0; index < childCount(); ++index)
            if (items->accessibleItemRect(index).contains(point))
                return child(index);
        return nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        return widget()->hasFocus() ? child(items->accessibleCurrentItem()) : nullptr;
    }

private:
    AccessibleItems* items;
    mutable std::vector<QAccessible::Id> made;
};

QAccessibleInterface* speaking(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget)
        return nullptr;
    if (auto* items = dynamic_cast<AccessibleItems*>(widget))
        return new SpokenItems(widget, *items);
    if (const auto* told = dynamic_cast<AccessibleSentence*>(widget))
        return new SpokenWidget(widget, *told);
    return nullptr;
}

} // namespace

void nameForAccessibility(QWidget& widget, const QString& name) {
    if (widget.accessibleName() != name)
        widget.setAccessibleName(name);
}

void installAccessibility() {
    QAccessible::installFactory(speaking); // does nothing where it is installed
}

} // namespace ostrivane
