#include "app/pages/SettingsPage.hpp"

#include "app/pages/DataSettings.hpp"
#include "app/pages/GeneralSettings.hpp"
#include "app/pages/MenuBarSettings.hpp"
#include "app/pages/PlainSettings.hpp"
#include "app/pages/SettingsControls.hpp"
#include "app/widgets/Banner.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/MessageDialog.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/Type.hpp"

#include <QVBoxLayout>

namespace ostrivane {

namespace {

constexpr int widestTabs = 680; // pixels that the narrowest window has

} // namespace

SettingsPage::SettingsPage(PageContext& given, QWidget* parent) : PageView(Page::settings, given, parent) {
    auto* reset = new PushButton(tr("Reset All Settings…"), ButtonKind::plain, this);
    connect(reset, &QAbstractButton::clicked, this, [this] { resetAll(); });
    addHeaderControl(reset);

    auto* strip = new QWidget(this);
    problem = new Banner(strip);
    tabs = new ChoiceBox(tr("Part of the settings"),
                         {tr("General"), tr("Menu Bar"), tr("Sampling"), tr("Privacy & Data"), tr("Updates")},
                         widestTabs, strip);
    connect(tabs, &ChoiceBox::indexChosen, this, [this](int index) { showTab(index); });
    auto* stripColumn = new QVBoxLayout(strip);
    stripColumn->setContentsMargins(0, 0, 0, 0);
    stripColumn->setSpacing(Type::px(12));
    stripColumn->addWidget(problem);
    stripColumn->addWidget(tabs, 0, Qt::AlignLeading);
    addStrip(strip);

    controls = new SettingsControls(model(), this);
    auto* body = new QWidget(this);
    general = new GeneralSettings(context, *controls, body);
    menuBar = new MenuBarSettings(context, *controls, body);
    data = new DataSettings(context, *controls, body);
    views = {general, menuBar, makeSamplingSettings(*controls, body), data, makeUpdateSettings(*controls, body)};
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (SettingsColumns* view : views)
        column->addWidget(view);
    column->addStretch(1);
    setBody(body, false);
    showTab(0);
}

void SettingsPage::showTab(int index) {
    for (std::size_t place = 0; place < views.size(); ++place)
        views[place]->setVisible(static_cast<int>(place) == index);
}

void SettingsPage::narrowChanged() {
    for (SettingsColumns* view : views)
        view->setNarrow(isNarrow());
}

void SettingsPage::wake() {
    watchingSettings = model().settings().observe([this] { showSettings(); });
    showSettings();
    general->refresh();
    data->ask();
}

void SettingsPage::sleep() {
    watchingSettings.disconnect();
}

void SettingsPage::refresh(const ModelChanges& changes) {
    if (changes.snapshot && menuBar->isVisible())
        menuBar->refresh();
}

void SettingsPage::showSettings() {
    controls->refresh();
    const auto failure = model().settings().defaults().problem();
    problem->set(Condition::high, failure ? tr("What you choose cannot be kept.") : QString(),
                 failure ? text(*failure) : QString());
}

void SettingsPage::resetAll() {
    if (!MessageDialog::ask({.condition = Condition::elevated,
                             .heading = tr("Reset all settings?"),
                             .text = tr("Every setting returns to its default. History is kept."),
                             .confirm = tr("Reset"),
                             .kind = ButtonKind::confirming,
                             .cancel = tr("Cancel")},
                            window()))
        return;
    model().settings().resetAll();
    model().applySettings();
}

} // namespace ostrivane
