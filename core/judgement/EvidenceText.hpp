#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ostrivane {

struct FanReading;

/// Pieces that several sentences share.
namespace EvidenceText {

/// "1200 rpm, 1350 rpm"; empty without fans.
std::string fans(const std::vector<FanReading>& fans);

/// "3000, 3001"
std::string ports(const std::vector<std::uint16_t>& ports);

} // namespace EvidenceText
} // namespace ostrivane
