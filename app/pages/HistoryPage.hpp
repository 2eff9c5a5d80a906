#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class HistoryPage final : public PageView {
public:
    explicit HistoryPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
