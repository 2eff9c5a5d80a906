#pragma once

#include "app/model/Subscription.hpp"
#include "app/pages/PageContext.hpp"
#include "app/widgets/Accessibility.hpp"

#include <QWidget>

#include <vector>

class QScrollArea;
class QVBoxLayout;

namespace ostrivane {

class LoginRow;
class PushButton;
class Switch;

/// What a new user should know and may want to choose, over the dimmed content of the window. Keeps the focus inside
/// while it is shown. Goes with Escape, "Get Started" or "Settings…": it then hides, and the model shows no welcome.
class WelcomeSheet final : public QWidget, public AccessibleSentence {
    Q_OBJECT
public:
    /// Covers `parent`, whatever its size.
    WelcomeSheet(PageContext& context, QWidget* parent);

    QAccessible::Role accessibleRole() const override { return QAccessible::Dialog; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void addHeading(QVBoxLayout& column);
    void addPoints(QVBoxLayout& column);
    void addChoices(QVBoxLayout& column);
    void addButtons(QVBoxLayout& column);
    void place();
    void close();

    PageContext& context;
    Subscription watchingSettings;
    QMetaObject::Connection watchingFocus;
    QWidget* content = nullptr;
    QScrollArea* panel = nullptr;
    LoginRow* login = nullptr;
    Switch* notifications = nullptr;
    PushButton* settings = nullptr;
    PushButton* start = nullptr;
    std::vector<QWidget*> stops; ///< of the focus, in their order
};

} // namespace ostrivane
