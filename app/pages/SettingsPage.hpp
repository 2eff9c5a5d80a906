#pragma once

#include "app/pages/PageView.hpp"

namespace ostrivane {

class SettingsPage final : public PageView {
public:
    explicit SettingsPage(PageContext& context, QWidget* parent = nullptr);

protected:
    void refresh(const ModelChanges& changes) override;
};

} // namespace ostrivane
