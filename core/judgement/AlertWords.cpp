#include "core/judgement/AlertWords.hpp"

#include "core/model/Formatters.hpp"

#include <cmath>

namespace ostrivane::AlertRules {

std::string truncated(double figure) {
    return Formatters::decimal(std::trunc(figure) + 0.0, 0); // the sum makes 0 of "-0"
}

} // namespace ostrivane::AlertRules
