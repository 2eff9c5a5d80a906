#pragma once

#include "core/sampling/platform/Applications.hpp"

namespace ostrivane {

class MacApplications final : public Applications {
public:
    std::shared_ptr<const InstalledApplications> installed() override { return nullptr; }
    BundleFacts bundleFacts(const std::string& path) override;
};

} // namespace ostrivane
