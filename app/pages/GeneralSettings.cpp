#include "app/pages/GeneralSettings.hpp"

#include "app/model/WayBack.hpp"
#include "app/pages/AlertRuleText.hpp"
#include "app/pages/LoginRow.hpp"
#include "app/pages/SettingsControls.hpp"
#include "app/pages/SettingsPageText.hpp"
#include "app/pages/ShownState.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Stepper.hpp"
#include "app/widgets/Strings.hpp"
#include "core/sampling/platform/NativeMachine.hpp"

namespace ostrivane {

using Reach = SettingsControls::Reach;

GeneralSettings::GeneralSettings(PageContext& given, SettingsControls& controls, QWidget* parent)
    : SettingsColumns(parent), context(given) {
    addLeading(makeLooks(controls));
    addLeading(makeUnits(controls));
    addLeading(makeStart(controls));
    addTrailing(makeNotifications(controls));
    addTrailing(makeServers(controls));
    addTrailing(makeOrganizer(controls));
}

QWidget* GeneralSettings::makeLooks(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Appearance"), this);
    group->add(tr("Theme"), {},
               controls.oneOf(tr("Theme"), {tr("System"), tr("Light"), tr("Dark")}, &Preferences::appearance));
    return group;
}

QWidget* GeneralSettings::makeUnits(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Units"), this);
    group->add(tr("Temperature"), {},
               controls.oneOf(tr("Unit of temperatures"), {tr("°C"), tr("°F")}, &Preferences::temperatureUnit));
    group->add(tr("Network rates"), tr("Disk rates are always in bytes"),
               controls.oneOf(tr("Unit of network rates"), {tr("Bytes"), tr("Bits")}, &Preferences::rateUnit));
    group->add(tr("CPU of apps and processes"), tr("What 100% stands for"),
               controls.oneOf(tr("What 100% of CPU stands for"), {tr("One core"), tr("Whole machine")},
                              &Preferences::cpuScale));
    return group;
}

QWidget* GeneralSettings::makeStart(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Start"), this);
    login = new LoginRow(context, group);
    group->addRow(login);
    const bool hasDock = nativePlatform() == Platform::macOS;
    if (hasDock)
        group->add(tr("Show in Dock"), tr("Keep the icon in the Dock while no window is open"),
                   controls.toggle(tr("Show in Dock"), &Preferences::showInDock));
    else
        addClosing(*group, controls);
    return group;
}

void GeneralSettings::addClosing(SettingsGroup& group, SettingsControls& controls) {
    keepRunning = new Switch(tr("Keep running without the window"));
    connect(keepRunning, &QAbstractButton::toggled, this, [this](bool keeps) {
        context.model.settings().defaults().setBoolean(keepRunningKey, keeps);
        showClosing();
    });
    closing = group.add(tr("Keep running without the window"), {}, keepRunning);
    controls.follow([this](const Preferences&) { showClosing(); });
}

void GeneralSettings::showClosing() {
    const WayBack wayBack = context.wayBack();
    const bool isAsked = wayBack == WayBack::furtherStart;
    const auto keeps = context.model.settings().defaults().boolean(keepRunningKey);
    closing->setDetail(text(closingText(wayBack, keeps)));
    showChecked(*keepRunning, isAsked ? keeps.value_or(false) : wayBack != WayBack::none);
    keepRunning->setEnabled(isAsked);
}

QWidget* GeneralSettings::makeNotifications(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Notifications"), this);
    group->add(tr("Notify me"), tr("The rules on the Alerts page say what is worth a notification"),
               controls.toggle(tr("Notify me"), &Preferences::notificationsEnabled));
    auto* edit = new LinkButton(tr("Edit rules"));
    connect(edit, &QAbstractButton::clicked, this, [this] { context.model.select(Page::alerts); });
    SettingRow* rules = group->add(tr("Rules"), {}, edit);
    controls.follow([rules](const Preferences& chosen) {
        rules->setDetail(text(rulesSummary(effectiveRules(chosen.alertRules))));
    });
    return group;
}

QWidget* GeneralSettings::makeServers(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Development servers"), this);
    group->add(tr("Call a server idle after"), text(projectsLater),
               controls.number(tr("Hours after which a server is idle"), "idleThresholdHours",
                               &Preferences::idleThresholdHours));
    group->add(tr("Detect projects and ports"), text(projectsLater),
               controls.toggle(tr("Detect projects and ports"), &Preferences::projectDetection, Reach::engine));
    return group;
}

QWidget* GeneralSettings::makeOrganizer(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Organizer"), this);
    group->add(tr("Sort files"), text(organizerLater),
               controls.oneOf(tr("How the organizer sorts files"), {tr("By kind"), tr("By kind, then month")},
                              &Preferences::organizerGrouping));
    return group;
}

void GeneralSettings::refresh() {
    login->refresh();
    if (closing)
        showClosing();
}

} // namespace ostrivane
