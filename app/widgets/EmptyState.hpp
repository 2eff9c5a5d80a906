#pragma once

#include <QWidget>

#include <string>
#include <string_view>

namespace ostrivane {

class PushButton;
class TextLabel;

/// What stands where there is nothing to show: an icon on a disc, a line, a line that says what fills the place, and at
/// most one button. Without an icon's name it has no disc, as inside a card.
class EmptyState final : public QWidget {
    Q_OBJECT
public:
    explicit EmptyState(std::string_view iconName = {}, QWidget* parent = nullptr);
    void set(const QString& title, const QString& detail = {}, const QString& action = {});

Q_SIGNALS:
    void actionTriggered();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::string icon;
    QWidget* disc = nullptr;
    TextLabel* title = nullptr;
    TextLabel* detail = nullptr;
    PushButton* action = nullptr;
};

} // namespace ostrivane
