#pragma once

#include "core/judgement/AlertKind.hpp"
#include "core/judgement/AlertRule.hpp"
#include "core/model/TextHash.hpp"

#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/uuid/random_generator.hpp>

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace ostrivane {

/// When each rule last fired, by subject. Nothing is ever taken out: a rule's cooldown may be made longer at any time.
class AlertBook {
public:
    /// Whether `rule` may fire about `subject` at `now`; if so, it is booked.
    bool enter(const AlertRule& rule, std::string_view subject, double now);

    boost::uuids::uuid newID() { return generator(); }

private:
    using Times = boost::unordered_flat_map<std::string, double, TextHash, std::equal_to<>>;

    std::array<Times, alertKindCount> lastFired; ///< by kind
    boost::uuids::random_generator_mt19937 generator;
};

} // namespace ostrivane
