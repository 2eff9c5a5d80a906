#include "core/Version.hpp"

namespace ostrivane {

const std::string_view version = OSTRIVANE_VERSION;

} // namespace ostrivane
