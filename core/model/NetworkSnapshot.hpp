#pragma once

#include "core/model/Described.hpp"
#include "core/model/RawValue.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// One network interface. Its identity is `name`.
struct InterfaceStats {
    enum class Kind { wifi, ethernet, thunderbolt, vpn, cellular, other };

    std::string name; ///< the system's name
    std::string displayName;
    Kind kind = Kind::other;
    std::uint64_t bytesIn = 0;  ///< cumulative
    std::uint64_t bytesOut = 0; ///< cumulative
    double inRate = 0;          ///< bytes per second
    double outRate = 0;         ///< bytes per second
    bool isUp = false;
    bool isPrimary = false;

    friend bool operator==(const InterfaceStats&, const InterfaceStats&) = default;
};
BOOST_DESCRIBE_STRUCT(InterfaceStats, (),
                      (name, displayName, kind, bytesIn, bytesOut, inRate, outRate, isUp, isPrimary))
static_assert(describesEveryMember<InterfaceStats>);

constexpr std::array<RawText<InterfaceStats::Kind>, 6> rawTexts(EnumTag<InterfaceStats::Kind>) {
    using Kind = InterfaceStats::Kind;
    return {{{Kind::wifi, "Wi-Fi"},
             {Kind::ethernet, "Ethernet"},
             {Kind::thunderbolt, "Thunderbolt"},
             {Kind::vpn, "VPN"},
             {Kind::cellular, "Cellular"},
             {Kind::other, "Other"}}};
}

/// Traffic of the machine over one tick.
struct NetworkSnapshot {
    double inRate = 0;          ///< bytes per second
    double outRate = 0;         ///< bytes per second
    std::uint64_t totalIn = 0;  ///< bytes
    std::uint64_t totalOut = 0; ///< bytes
    std::vector<InterfaceStats> interfaces;

    /// The first interface with `isPrimary`.
    std::optional<InterfaceStats> primary() const;

    static const NetworkSnapshot empty;
    friend bool operator==(const NetworkSnapshot&, const NetworkSnapshot&) = default;
};
BOOST_DESCRIBE_STRUCT(NetworkSnapshot, (), (inRate, outRate, totalIn, totalOut, interfaces))
static_assert(describesEveryMember<NetworkSnapshot>);
inline const NetworkSnapshot NetworkSnapshot::empty{};

} // namespace ostrivane
