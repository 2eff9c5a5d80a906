#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class GPUPage final : public PageView {
public:
    explicit GPUPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
