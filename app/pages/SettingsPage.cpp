#include "app/pages/SettingsPage.hpp"

namespace ostrivane {

SettingsPage::SettingsPage(PageContext& given, QWidget* parent) : PageView(Page::settings, given, parent) {
    setBody(new QWidget(this), true);
}

void SettingsPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
