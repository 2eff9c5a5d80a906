#pragma once

#include "core/model/Described.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// A mounted file system. Its identity is `mountPoint`.
struct VolumeInfo {
    std::string name;
    std::string mountPoint;
    std::string fileSystem;
    std::uint64_t total = 0;     ///< bytes
    std::uint64_t available = 0; ///< bytes
    bool isInternal = false;
    bool isRoot = false;
    bool isEjectable = false;

    /// `total` less `available`, in bytes; 0 when `available` is larger.
    std::uint64_t used() const;
    /// `used()` of `total`; 0 when `total` is 0.
    double usedFraction() const;

    friend bool operator==(const VolumeInfo&, const VolumeInfo&) = default;
};
BOOST_DESCRIBE_STRUCT(VolumeInfo, (), (name, mountPoint, fileSystem, total, available, isInternal, isRoot, isEjectable))
static_assert(describesEveryMember<VolumeInfo>);

/// Throughput of all drives over one tick, and the volumes on them.
struct DiskSnapshot {
    double readBytesPerSec = 0;
    double writeBytesPerSec = 0;
    std::uint64_t totalRead = 0;    ///< bytes since boot, summed over drives
    std::uint64_t totalWritten = 0; ///< bytes since boot, summed over drives
    std::vector<VolumeInfo> volumes;

    /// The first volume with `isRoot`.
    std::optional<VolumeInfo> root() const;

    static const DiskSnapshot empty;
    friend bool operator==(const DiskSnapshot&, const DiskSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(DiskSnapshot, (), (readBytesPerSec, writeBytesPerSec, totalRead, totalWritten, volumes))
static_assert(describesEveryMember<DiskSnapshot>);
inline const DiskSnapshot DiskSnapshot::empty{};

} // namespace ostrivane
