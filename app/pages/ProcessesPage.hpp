#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class ProcessesPage final : public PageView {
public:
    explicit ProcessesPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
