#include "app/pages/AlertsPage.hpp"

namespace ostrivane {

AlertsPage::AlertsPage(PageContext& given, QWidget* parent) : PageView(Page::alerts, given, parent) {
    setBody(new QWidget(this), true);
}

void AlertsPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
