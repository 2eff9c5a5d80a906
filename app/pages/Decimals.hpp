#pragma once

namespace ostrivane {

/// How many decimals, at most three, show a number as it was chosen.
int shownDecimals(double value);

} // namespace ostrivane
