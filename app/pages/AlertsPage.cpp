#include "app/pages/AlertsPage.hpp"

#include "app/pages/AlertLines.hpp"
#include "app/pages/AlertRulesCard.hpp"
#include "app/pages/AlertsView.hpp"
#include "app/pages/Links.hpp"
#include "app/pages/ShownState.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Card.hpp"
#include "app/widgets/EmptyState.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/MessageDialog.hpp"
#include "app/widgets/SegmentedControl.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"
#include "core/model/Calendar.hpp"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivane {

namespace {

constexpr double rulesWidth = 436;
constexpr double leastWithLabel = 560; ///< of the page, for the words beside its switch

} // namespace

AlertsPage::AlertsPage(PageContext& given, QWidget* parent) : PageView(Page::alerts, given, parent) {
    makeHeader();
    auto* body = new QWidget(this);
    tabs = new SegmentedControl(tr("Part of the page"), {tr("History"), tr("Rules")}, body);
    connect(tabs, &SegmentedControl::indexChosen, this, [this] { arrange(); });
    rules = new AlertRulesCard(context, body);
    auto* cards = new QHBoxLayout;
    cards->setSpacing(Type::px(12));
    cards->addWidget(makeHistory(), 1);
    cards->addWidget(rules);
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Type::px(12));
    column->addWidget(tabs, 0, Qt::AlignLeading);
    column->addLayout(cards, 1);
    setBody(body, true);
    arrange();
}

void AlertsPage::makeHeader() {
    notificationsLabel = new TextLabel(TypeRole::secondary, Tone::text2, this);
    notificationsLabel->setText(tr("Notifications"));
    notificationsLabel->setElideMode(Qt::ElideNone);
    addHeaderControl(notificationsLabel);
    notifications = new Switch(tr("Notifications"), this);
    notifications->setToolTip(tr("Notifications"));
    connect(notifications, &QAbstractButton::toggled, this,
            [this](bool isOn) { model().settings().set(&Preferences::notificationsEnabled, isOn); });
    addHeaderControl(notifications);
    clearButton = new PushButton(tr("Clear…"), ButtonKind::plain, this);
    clearButton->setIconName("clear");
    clearButton->setAccessibleName(tr("Clear all alerts…"));
    connect(clearButton, &QAbstractButton::clicked, this, [this] { clear(); });
    addHeaderControl(clearButton);
}

QWidget* AlertsPage::makeHistory() {
    history = new Card(tr("History"), this);
    history->setFlush(true);
    filter = new SegmentedControl(tr("Alerts that are shown"), {tr("All"), tr("Warnings"), tr("Critical")}, history);
    connect(filter, &SegmentedControl::indexChosen, this, [this] { showAlerts(); });
    history->addControl(filter);
    lines = new AlertLines(this);
    list = new AlertsView(lines, history);
    connect(list, &AlertsView::opened, this, [this](const QModelIndex& index) { open(index); });
    connect(list, &AlertsView::menuWanted, this,
            [this](const QModelIndex& index, QPoint place) { showMenu(index, place); });
    empty = new EmptyState(Icons::nameOf(Page::alerts), history);
    connect(empty, &EmptyState::actionTriggered, this, [this] {
        filter->setIndex(0);
        showAlerts();
    });
    footer = new TextLabel(TypeRole::secondary, Tone::text2, history);
    footer->setContentsMargins(Type::px(14), 0, Type::px(14), 0);

    QVBoxLayout* column = history->body();
    column->addWidget(Card::separator(history));
    column->addWidget(list, 1);
    column->addWidget(empty, 1);
    column->addWidget(Card::separator(history));
    auto* foot = new QHBoxLayout;
    foot->setContentsMargins(Type::px(14), Type::px(9), Type::px(14), Type::px(9));
    foot->addWidget(footer);
    column->addLayout(foot);
    return history;
}

void AlertsPage::narrowChanged() {
    arrange();
}

void AlertsPage::resizeEvent(QResizeEvent* resized) {
    PageView::resizeEvent(resized);
    notificationsLabel->setVisible(width() >= Type::px(leastWithLabel));
}

void AlertsPage::arrange() {
    tabs->setVisible(isNarrow());
    history->setVisible(!isNarrow() || tabs->index() == 0);
    rules->setVisible(!isNarrow() || tabs->index() == 1);
    rules->setMinimumWidth(isNarrow() ? 0 : Type::px(rulesWidth));
    rules->setMaximumWidth(isNarrow() ? QWIDGETSIZE_MAX : Type::px(rulesWidth));
}

QWidget* AlertsPage::mainWidget() const {
    return list;
}

void AlertsPage::wake() {
    watchingSettings = model().settings().observe([this] { showSettings(); });
    showSettings();
}

void AlertsPage::sleep() {
    watchingSettings.disconnect();
}

void AlertsPage::refresh(const ModelChanges& changes) {
    if (changes.alerts || Calendar::startOfDay(context.now()) != shownDay)
        showAlerts();
}

void AlertsPage::showAlerts() {
    const std::vector<Alert>& alerts = state().alerts;
    shownDay = Calendar::startOfDay(context.now());
    auto passing = alertLines(alerts, static_cast<AlertFilter>(filter->index()), context.now());
    const bool isEmpty = passing.empty();
    lines->assign(std::move(passing));
    if (alerts.empty())
        empty->set(tr("No alerts"), tr("When a rule fires, it is listed here."));
    else
        empty->set(tr("No matches."), {}, tr("Clear Filter"));
    list->setVisible(!isEmpty);
    empty->setVisible(isEmpty);
    clearButton->setEnabled(!alerts.empty());
    setSubtitle(text(alertsSubtitle(alerts, context.now())));
}

void AlertsPage::showSettings() {
    showChecked(*notifications, model().settings()->notificationsEnabled);
    footer->setText(text(alertsFooter(model().settings()->retentionDays)));
    rules->refresh();
}

const Alert* AlertsPage::alertAt(const QModelIndex& index) const {
    const AlertLine* line = lines->line(index);
    if (!line || !line->id)
        return nullptr;
    const auto& alerts = state().alerts;
    const auto found = std::ranges::find(alerts, *line->id, &Alert::id);
    return found == alerts.end() ? nullptr : &*found;
}

void AlertsPage::open(const QModelIndex& index) {
    const Alert* alert = alertAt(index);
    if (!alert)
        return;
    const AlertTarget where = target(*alert);
    if (where.appKey)
        openApp(model(), *where.appKey);
    else
        model().select(where.page);
}

void AlertsPage::showMenu(const QModelIndex& index, const QPoint& place) {
    const Alert* alert = alertAt(index);
    if (!alert)
        return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QString show = text(showText(target(*alert), state(), context.words));
    constexpr int longest = 60; // a menu has no room for every name
    if (show.size() > longest)
        show = show.left(longest) + QStringLiteral("…");
    show.replace(QLatin1Char('&'), QStringLiteral("&&"));
    connect(menu->addAction(show), &QAction::triggered, this,
            [this, stays = QPersistentModelIndex(index)] { open(stays); });
    connect(menu->addAction(tr("Copy Text")), &QAction::triggered, this,
            [words = text(copied(*alert))] { QGuiApplication::clipboard()->setText(words); });
    menu->popup(place);
}

void AlertsPage::clear() {
    if (MessageDialog::ask({.condition = Condition::elevated,
                            .heading = tr("Clear all alerts?"),
                            .text = tr("The list and its stored history are emptied. Rules stay as they are."),
                            .confirm = tr("Clear"),
                            .kind = ButtonKind::confirming,
                            .cancel = tr("Cancel")},
                           window()))
        model().clearAlerts();
}

} // namespace ostrivane
