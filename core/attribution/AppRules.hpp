#pragma once

#include "core/attribution/AppGrouper.hpp"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace ostrivane {

class DesktopEntryIndex;
class ProcessTable;

/// The rules by which a platform's processes find their application, and what the rules ask. In every list the first
/// rule that gives a key decides; an empty key means that the rule does not apply.
struct AppRules {
    /// Goes by the facts of one process.
    using OwnRule = std::string (*)(const AppGrouper::Input& input, const AppRules& rules);
    /// Goes by what processes say by themselves, and by who started whom.
    using Rule = std::string_view (*)(const AppGrouper::Process& process, const ProcessTable& all);

    const AppTables& tables;
    std::span<const Rule> order;          ///< of a process among the others
    std::span<const OwnRule> application; ///< `OwnKeys::application`
    std::span<const OwnRule> unitEntry;   ///< `OwnKeys::unitEntry`
    std::span<const OwnRule> name;        ///< `OwnKeys::name`

    std::function<bool(const std::string& path)> exists; ///< macOS: something lies at `path`
    std::string home;                                    ///< macOS
    std::shared_ptr<const DesktopEntryIndex> installed;  ///< Linux

    static AppRules forMacOS(std::function<bool(const std::string& path)> exists, std::string home);
    static AppRules forLinux(std::shared_ptr<const DesktopEntryIndex> installed);
};

} // namespace ostrivane
