#include "core/judgement/EvidenceText.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/ThermalSnapshot.hpp"

#include <fmt/format.h>

namespace ostrivane::EvidenceText {

std::string fans(const std::vector<FanReading>& fans) {
    std::string text;
    for (const FanReading& fan : fans) {
        text += text.empty() ? "" : ", ";
        text += Formatters::whole(fan.rpm) + " rpm";
    }
    return text;
}

std::string ports(const std::vector<std::uint16_t>& ports) {
    return fmt::format("{}", fmt::join(ports, ", "));
}

} // namespace ostrivane::EvidenceText
