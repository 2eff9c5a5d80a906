#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

/// A page whose readings are not taken yet: says so, and what it will show.
class PlannedPage final : public PageView {
public:
    PlannedPage(Page page, PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges&) override {}
};

/// What the page will show, in a sentence.
QString plannedText(Page page);

} // namespace ostrivane
