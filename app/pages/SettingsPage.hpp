#pragma once

#include "app/pages/PageView.hpp"

#include <vector>

namespace ostrivane {

class Banner;
class ChoiceBox;
class DataSettings;
class GeneralSettings;
class MenuBarSettings;
class SettingsColumns;
class SettingsControls;

/// Everything that can be chosen. Each control writes at once, and shows what another program chose.
class SettingsPage final : public PageView {
public:
    explicit SettingsPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
    void wake() override;
    void sleep() override;
    void narrowChanged() override;

private:
    void showTab(int index);
    void showSettings();
    void resetAll();

    Subscription watchingSettings;
    Banner* problem = nullptr;
    ChoiceBox* tabs = nullptr;
    SettingsControls* controls = nullptr;
    GeneralSettings* general = nullptr;
    MenuBarSettings* menuBar = nullptr;
    DataSettings* data = nullptr;
    std::vector<SettingsColumns*> views; ///< in the order of the tabs
};

} // namespace ostrivane
