#include "core/attribution/UnitLeaders.hpp"

#include <boost/unordered/unordered_flat_map.hpp>

#include <functional>
#include <tuple>

namespace ostrivane {

std::vector<std::int32_t> unitLeaders(const std::vector<UnitMember>& members) {
    boost::unordered_flat_map<std::string_view, const UnitMember*, std::hash<std::string_view>> first;
    for (const UnitMember& member : members) {
        if (member.unit.empty())
            continue;
        const UnitMember*& leader = first.emplace(member.unit, &member).first->second;
        if (std::tie(member.start, member.pid) < std::tie(leader->start, leader->pid))
            leader = &member;
    }
    std::vector<std::int32_t> leaders;
    leaders.reserve(members.size());
    for (const UnitMember& member : members)
        leaders.push_back(member.unit.empty() ? member.pid : first.find(member.unit)->second->pid);
    return leaders;
}

} // namespace ostrivane
