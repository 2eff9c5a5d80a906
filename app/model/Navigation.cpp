#include "app/model/Navigation.hpp"

namespace ostrivane {

void Navigation::select(Page page) {
    if (page == selected)
        return;
    back.push_back(selected);
    forward.clear();
    selected = page;
}

void Navigation::move(Page& selected, std::vector<Page>& from, std::vector<Page>& to) {
    if (from.empty())
        return;
    to.push_back(selected);
    selected = from.back();
    from.pop_back();
}

void Navigation::goBack() {
    move(selected, back, forward);
}

void Navigation::goForward() {
    move(selected, forward, back);
}

} // namespace ostrivane
