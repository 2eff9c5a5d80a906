#include "app/pages/SettingsControls.hpp"

#include "app/pages/Decimals.hpp"
#include "app/pages/ShownState.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/Stepper.hpp"
#include "app/widgets/Strings.hpp"

namespace ostrivane {

namespace {

constexpr int widestChoice = 420; // pixels that the narrowest window leaves beside a title

} // namespace

SettingsControls::SettingsControls(AppModel& shared, QObject* parent) : QObject(parent), model(shared) {}

Switch* SettingsControls::toggle(const QString& name, bool Preferences::*choice, Reach reach) {
    auto* made = new Switch(name);
    connect(made, &QAbstractButton::toggled, this, [this, choice, reach](bool isOn) { set(choice, isOn, reach); });
    follow([made, choice](const Preferences& chosen) { showChecked(*made, chosen.*choice); });
    return made;
}

ChoiceBox* SettingsControls::makeBox(const QString& name, const QStringList& titles) {
    return new ChoiceBox(name, titles, widestChoice);
}

Stepper* SettingsControls::makeStepper(const QString& name, const OfferedRange& range,
                                       const std::function<double(const Preferences&)>& read,
                                       const std::function<void(double)>& write) {
    auto* made = new Stepper(name, range.least, range.most);
    made->setUnit(text(range.unit));
    connect(made, &Stepper::valueChosen, this, write);
    follow([made, read](const Preferences& chosen) {
        const double value = read(chosen);
        made->setDecimals(shownDecimals(value)); // a file may hold any number
        made->setValue(value);
    });
    return made;
}

void SettingsControls::follow(std::function<void(const Preferences&)> show) {
    show(*model.settings());
    followers.push_back(std::move(show));
}

void SettingsControls::refresh() {
    for (const auto& show : followers)
        show(*model.settings());
}

} // namespace ostrivane
