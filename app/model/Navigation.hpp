#pragma once

#include "core/model/Page.hpp"

#include <vector>

namespace ostrivane {

/// The page that is shown, and the way back and forward.
class Navigation {
public:
    Page selectedPage() const { return selected; }
    const std::vector<Page>& backStack() const { return back; }
    const std::vector<Page>& forwardStack() const { return forward; }

    /// The page that is shown already changes nothing.
    void select(Page page);
    void goBack();
    void goForward();

private:
    static void move(Page& selected, std::vector<Page>& from, std::vector<Page>& to);

    Page selected = Page::overview;
    std::vector<Page> back;
    std::vector<Page> forward;
};

} // namespace ostrivane
