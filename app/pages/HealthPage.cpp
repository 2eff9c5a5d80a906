#include "app/pages/HealthPage.hpp"

namespace ostrivane {

HealthPage::HealthPage(PageContext& given, QWidget* parent) : PageView(Page::health, given, parent) {
    setBody(new QWidget(this), true);
}

void HealthPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
