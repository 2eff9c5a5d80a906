#pragma once

#include "core/attribution/BundleFacts.hpp"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ostrivane {

/// Reads the bundle at a path. What cannot be read gives no names and no identifier.
using BundleReader = std::function<BundleFacts(const std::string& path)>;

/// Name and identifier of the application behind a key. Every key is read once, and its answer kept as long as the
/// cache lives. Any thread may ask.
class BundleInfoCache {
public:
    struct Info {
        std::string name;
        std::optional<std::string> bundleID;

        friend bool operator==(const Info&, const Info&) = default;
    };

    /// `nameOfSystem` is how the processes of the system are shown together.
    BundleInfoCache(std::string_view nameOfSystem, BundleReader asked);

    /// The answer stays where it is and never changes.
    const Info& info(const std::string& key);

private:
    Info read(const std::string& key) const;

    std::string systemName;
    BundleReader reader;
    std::mutex cacheLock;
    std::unordered_map<std::string, Info> cache;
};

} // namespace ostrivane
