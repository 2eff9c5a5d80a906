#include "app/window/ActivationPolicy.hpp"

namespace ostrivane {

void updateActivationPolicy(bool /*isRegular*/) {
    // A desktop's list of windows is all there is.
}

} // namespace ostrivane
