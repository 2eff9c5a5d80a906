#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class AlertsPage final : public PageView {
public:
    explicit AlertsPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
