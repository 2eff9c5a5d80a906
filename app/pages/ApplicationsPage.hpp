#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class ApplicationsPage final : public PageView {
public:
    explicit ApplicationsPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
