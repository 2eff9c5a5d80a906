#include "app/pages/MenuBarSettings.hpp"

#include "app/pages/MenuItemsList.hpp"
#include "app/pages/SettingsControls.hpp"
#include "app/pages/SettingsPageText.hpp"
#include "app/widgets/Buttons.hpp"
#include "app/widgets/InfoNote.hpp"
#include "app/widgets/Strings.hpp"

namespace ostrivane {

namespace {

template <class Enum>
QStringList titles() {
    QStringList found;
    for (const auto& [value, raw] : rawTexts(EnumTag<Enum>{}))
        found.append(text(title(value)));
    return found;
}

} // namespace

MenuBarSettings::MenuBarSettings(PageContext& given, SettingsControls& controls, QWidget* parent)
    : SettingsColumns(parent), context(given) {
    auto* later = new InfoNote(this);
    later->setText(text(trayLater));
    addLeading(later);
    addLeading(makeLayout(controls));
    addLeading(makePopover(controls));
    addTrailing(makeItems(controls));
}

QWidget* MenuBarSettings::makeLayout(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Layout"), this);
    group->add(tr("Show"), {},
               controls.oneOf(tr("Layout of the menu bar"), titles<MenuBarLayout>(), &Preferences::menuBarLayout));
    group->add(tr("Temperature source"), tr("For the Overview and the item"),
               controls.oneOf(tr("Temperature source"), titles<TemperatureSource>(), &Preferences::temperatureSource));
    return group;
}

QWidget* MenuBarSettings::makePopover(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Popover"), this);
    group->add(tr("Compact list"), tr("One line for each figure, which leaves more room for insights"),
               controls.toggle(tr("Compact list"), &Preferences::popoverListLayout));
    return group;
}

QWidget* MenuBarSettings::makeItems(SettingsControls& controls) {
    auto* group = new SettingsGroup(tr("Items"), this);
    group->setHint(tr("Drag, or Alt Up and Alt Down, to change the order"));
    items = new MenuItemsList(group);
    group->addRow(items);
    connect(items, &MenuItemsList::itemsChosen, &controls, [&controls](const std::vector<MenuBarItemConfig>& chosen) {
        controls.set(&Preferences::menuBarItems, chosen, SettingsControls::Reach::window);
    });
    controls.follow([this, group](const Preferences& chosen) {
        items->setItems(chosen.menuBarItems);
        group->setFoot(text(paceText(chosen.backgroundInterval, chosen.foregroundInterval)));
        refresh();
    });
    return group;
}

void MenuBarSettings::refresh() {
    const Preferences& chosen = *context.model.settings();
    std::vector<std::string> values;
    for (const MenuBarItemConfig& item : chosen.menuBarItems)
        values.push_back(valueText(item.metric, chosen.temperatureSource, context.model.state()));
    items->setValues(values);
}

} // namespace ostrivane
