#pragma once

#include <boost/signals2/connection.hpp>

namespace ostrivane {

/// Lasts as long as an observer wants to be called.
using Subscription = boost::signals2::scoped_connection;

} // namespace ostrivane
