#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class CPUPage final : public PageView {
public:
    explicit CPUPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
