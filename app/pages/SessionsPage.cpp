#include "app/pages/SessionsPage.hpp"

namespace ostrivane {

SessionsPage::SessionsPage(PageContext& given, QWidget* parent) : PageView(Page::sessions, given, parent) {
    setBody(new QWidget(this), true);
}

void SessionsPage::refresh(const ModelChanges&) {}

} // namespace ostrivane
