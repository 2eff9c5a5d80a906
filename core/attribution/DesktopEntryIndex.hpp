#pragma once

#include "core/attribution/BundleFacts.hpp"
#include "core/attribution/InstalledApplication.hpp"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace ostrivane {

/// The installed applications, by what a process shows of them. What it answers lives as long as the list does.
class DesktopEntryIndex {
public:
    /// Null is a machine without applications.
    explicit DesktopEntryIndex(std::shared_ptr<const InstalledApplications> applications = nullptr);

    /// The application whose program lies at `path`.
    const InstalledApplication* bundleForProgram(std::string_view path) const;
    /// The same, and the one whose private folder holds `path`; of two folders the inner one.
    const InstalledApplication* bundleForPath(std::string_view path) const;
    /// `id` without ".desktop", as units and sandboxes tell it: exact, else without regard to case.
    const InstalledApplication* bundleForID(std::string_view id) const;
    /// The application with the entry at `path`.
    const InstalledApplication* bundleAt(std::string_view path) const;

    /// Names and identifier for `BundleInfoCache`.
    BundleFacts facts(std::string_view path) const;

private:
    /// The keys point into `all`.
    using Places = std::map<std::string_view, const InstalledApplication*>;

    std::shared_ptr<const InstalledApplications> all;
    Places byPath;
    Places byID;
    std::map<std::string, const InstalledApplication*, std::less<>> byLowerID;
    Places byProgram;
    Places byFolder;
};

} // namespace ostrivane
