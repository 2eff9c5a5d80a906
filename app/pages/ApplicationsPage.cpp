#include "app/pages/ApplicationsPage.hpp"

namespace ostrivane {

ApplicationsPage::ApplicationsPage(PageContext& given, QWidget* parent) : PageView(Page::applications, given, parent) {
    setBody(new QWidget(this), true);
}

void ApplicationsPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
