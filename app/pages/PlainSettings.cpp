#include "app/pages/PlainSettings.hpp"

#include "app/pages/SettingsControls.hpp"
#include "app/pages/SettingsGroup.hpp"
#include "app/pages/SettingsPageText.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Stepper.hpp"
#include "app/widgets/Strings.hpp"
#include "app/widgets/TextLabel.hpp"

#include <QCoreApplication>

namespace ostrivane {

namespace {

using Reach = SettingsControls::Reach;

QString tr(const char* words) {
    return QCoreApplication::translate("Settings", words);
}

} // namespace

SettingsColumns* makeSamplingSettings(SettingsControls& controls, QWidget* parent) {
    auto* columns = new SettingsColumns(parent);
    auto* pace = new SettingsGroup(tr("How often the machine is read"), columns);
    pace->add(tr("While the window is seen"), tr("Fresher figures at a higher cost"),
              controls.number(tr("Seconds between readings while the window is seen"), "foregroundInterval",
                              &Preferences::foregroundInterval));
    pace->add(tr("In the background"), tr("For history and alerts"),
              controls.number(tr("Seconds between readings in the background"), "backgroundInterval",
                              &Preferences::backgroundInterval));
    columns->addLeading(pace);
    auto* what = new SettingsGroup(tr("What is read"), columns);
    what->add(tr("Processes of the system and other users"), tr("Without them only your own are listed"),
              controls.toggle(tr("Processes of the system and other users"), &Preferences::includeSystemProcesses,
                              Reach::engine));
    what->add(tr("Network traffic by process"), tr("Costs most where there are many connections"),
              controls.toggle(tr("Network traffic by process"), &Preferences::perProcessNetwork, Reach::engine));
    columns->addTrailing(what);
    return columns;
}

SettingsColumns* makeUpdateSettings(SettingsControls& controls, QWidget* parent) {
    auto* columns = new SettingsColumns(parent);
    auto* group = new SettingsGroup(tr("Updates"), columns);
    auto* version = new TextLabel(TypeRole::body, Tone::text2);
    version->setText(QStringLiteral(OSTRIVANE_VERSION));
    version->setElideMode(Qt::ElideNone);
    group->add(tr("Version"), {}, version);
    group->add(tr("Check for updates"), {}, controls.toggle(tr("Check for updates"), &Preferences::checkForUpdates));
    group->setFoot(text(updatesLater));
    columns->addLeading(group);
    return columns;
}

} // namespace ostrivane
