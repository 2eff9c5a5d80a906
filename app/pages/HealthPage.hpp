#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class HealthPage final : public PageView {
public:
    explicit HealthPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
