#pragma once

#include "core/attribution/ControlGroupUnit.hpp"
#include "core/attribution/DesktopEntryIndex.hpp"
#include "core/model/Date.hpp"

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

namespace ostrivane {

/// A process of Linux and the application that it was found to belong to.
struct GroupedProcess {
    std::string_view key;
    std::int32_t pid = 0;
    Date start;
    std::int32_t leader = 0;                ///< of its unit, by `unitLeaders`; its own pid when it is in none
    const ControlGroupUnit* unit = nullptr; ///< never null
};

/// The applications that a person has open, each with the process that stands for it. What is in no menu is none, and
/// neither is what the session started by itself on its behalf. An application may run in several units, and processes
/// of it in those of others, such as a terminal's: a process that leads its own unit goes before all that do not, and
/// of two the one that started first.
std::map<std::string, std::int32_t> runningApplications(std::span<const GroupedProcess> processes,
                                                        const DesktopEntryIndex& installed);

} // namespace ostrivane
