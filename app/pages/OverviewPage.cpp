#include "app/pages/OverviewPage.hpp"

namespace ostrivane {

OverviewPage::OverviewPage(PageContext& given, QWidget* parent) : PageView(Page::overview, given, parent) {
    setBody(new QWidget(this), true);
}

void OverviewPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
