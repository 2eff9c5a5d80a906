#pragma once

#include "app/pages/PageContext.hpp"
#include "app/pages/SettingsGroup.hpp"

namespace ostrivane {

class SettingsControls;
class TextLabel;

/// What is kept, where, and how to be rid of it.
class DataSettings final : public SettingsColumns {
public:
    DataSettings(PageContext& context, SettingsControls& controls, QWidget* parent);
    /// Asks the history how much it keeps, and since when.
    void ask();

private:
    QWidget* makeHistory(SettingsControls& controls);
    QWidget* makePrivacy();
    QWidget* makePlaces();
    void addPlace(SettingsGroup& group, const QString& title, const QString& path, const QString& revealName);
    void clear();

    PageContext& context;
    TextLabel* size = nullptr;
    TextLabel* earliest = nullptr;
};

} // namespace ostrivane
