#include "app/pages/HistoryPage.hpp"

namespace ostrivane {

HistoryPage::HistoryPage(PageContext& given, QWidget* parent) : PageView(Page::history, given, parent) {
    setBody(new QWidget(this), true);
}

void HistoryPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
