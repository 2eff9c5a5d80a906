#pragma once

#include "app/widgets/Accessibility.hpp"
#include "app/widgets/Theme.hpp"

#include <QWidget>

namespace ostrivane {

/// "Normal", as it is said where only a glyph is seen.
QString wordOf(Condition condition);

class IconButton;
class PushButton;
class StatusGlyph;
class TextLabel;

/// A message across the page: glyph, a line of text, a second line below it where there is one, an optional button.
/// Raises one accessible alert when its text changes while it is shown.
class Banner final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    explicit Banner(QWidget* parent = nullptr);
    /// An empty `title` hides the banner.
    void set(Condition condition, const QString& title, const QString& detail = {});
    void setAction(const QString& label); ///< empty: no button
    void setClosable(bool closable);
    QAccessible::Role accessibleRole() const override { return QAccessible::AlertMessage; }
    QString accessibleLabel() const override;

Q_SIGNALS:
    void actionTriggered();
    void closed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void announce();

    Condition condition = Condition::info;
    QString announced;
    StatusGlyph* glyph = nullptr;
    TextLabel* title = nullptr;
    TextLabel* detail = nullptr;
    PushButton* action = nullptr;
    IconButton* closeButton = nullptr;
};

} // namespace ostrivane
