#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class SessionsPage final : public PageView {
public:
    explicit SessionsPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
