#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class OverviewPage final : public PageView {
public:
    explicit OverviewPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
