#include "app/pages/Decimals.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/Text.hpp"

namespace ostrivane {

int shownDecimals(double value) {
    constexpr int most = 3;
    int count = 0;
    while (count < most && Text::number<double>(Formatters::decimal(value, count)) != value)
        ++count;
    return count;
}

} // namespace ostrivane
