#pragma once

#include "core/attribution/BundleFacts.hpp"
#include "core/attribution/InstalledApplication.hpp"

#include <memory>
#include <string>

namespace ostrivane {

/// What a machine can be asked about its applications. Nothing here throws.
class Applications {
public:
    virtual ~Applications() = default;

    /// Linux: the applications that the desktop entries describe. The same object until applications come or go, so
    /// that a new pointer means new rules. Null on macOS, where the path of a program tells its application.
    virtual std::shared_ptr<const InstalledApplications> installed() = 0;

    /// macOS: what the bundle at `path` says of itself; nothing where there is none. Linux: nothing, for `installed`
    /// tells it all.
    virtual BundleFacts bundleFacts(const std::string& path) = 0;
};

} // namespace ostrivane
