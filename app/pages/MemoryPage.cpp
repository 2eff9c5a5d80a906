#include "app/pages/MemoryPage.hpp"

namespace ostrivane {

MemoryPage::MemoryPage(PageContext& given, QWidget* parent) : PageView(Page::memory, given, parent) {
    setBody(new QWidget(this), true);
}

void MemoryPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
