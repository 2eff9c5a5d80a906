#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/members.hpp>
#include <boost/mp11/list.hpp>
#include <boost/pfr/tuple_size.hpp>

namespace ostrivane {

/// Whether BOOST_DESCRIBE_STRUCT names every member of the aggregate `Record`. Asserted beside each description, so
/// that a member which is added and not described does not compile.
template <class Record>
constexpr bool describesEveryMember =
    boost::mp11::mp_size<boost::describe::describe_members<Record, boost::describe::mod_any_access>>::value ==
    boost::pfr::tuple_size_v<Record>;

} // namespace ostrivane
