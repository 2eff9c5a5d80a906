#include "app/pages/CPUPage.hpp"

namespace ostrivane {

CPUPage::CPUPage(PageContext& given, QWidget* parent) : PageView(Page::cpu, given, parent) {
    setBody(new QWidget(this), true);
}

void CPUPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
