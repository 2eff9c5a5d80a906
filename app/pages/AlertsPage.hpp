#pragma once

#include "app/pages/AlertsText.hpp"
#include "app/pages/PageView.hpp"

class QModelIndex;

namespace ostrivane {

class AlertLines;
class AlertRulesCard;
class AlertsView;
class Card;
class EmptyState;
class PushButton;
class SegmentedControl;
class Switch;
class TextLabel;

/// What has fired, by day, and the rules by which it does.
class AlertsPage final : public PageView {
public:
    explicit AlertsPage(PageContext& context, QWidget* parent = nullptr);

protected:
    QWidget* mainWidget() const override;
    void refresh(const ModelChanges& changes) override;
    void wake() override;
    void sleep() override;
    void narrowChanged() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeHeader();
    QWidget* makeHistory();
    void arrange();
    void showAlerts();
    void showSettings();
    const Alert* alertAt(const QModelIndex& index) const;
    void open(const QModelIndex& index);
    void showMenu(const QModelIndex& index, const QPoint& place);
    void clear();

    Subscription watchingSettings;
    Date shownDay; ///< the midnight that the names of the days were made by
    TextLabel* notificationsLabel = nullptr;
    Switch* notifications = nullptr;
    PushButton* clearButton = nullptr;
    SegmentedControl* tabs = nullptr; ///< where the window is narrow
    Card* history = nullptr;
    SegmentedControl* filter = nullptr;
    AlertLines* lines = nullptr;
    AlertsView* list = nullptr;
    EmptyState* empty = nullptr;
    TextLabel* footer = nullptr;
    AlertRulesCard* rules = nullptr;
};

} // namespace ostrivane
