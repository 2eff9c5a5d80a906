#include "app/pages/GPUPage.hpp"

namespace ostrivane {

GPUPage::GPUPage(PageContext& given, QWidget* parent) : PageView(Page::gpu, given, parent) {
    setBody(new QWidget(this), true);
}

void GPUPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
