#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class MemoryPage final : public PageView {
public:
    explicit MemoryPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
