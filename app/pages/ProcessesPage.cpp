#include "app/pages/ProcessesPage.hpp"

namespace ostrivane {

ProcessesPage::ProcessesPage(PageContext& given, QWidget* parent) : PageView(Page::processes, given, parent) {
    setBody(new QWidget(this), true);
}

void ProcessesPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
