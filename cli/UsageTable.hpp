#pragma once

#include "cli/StyledText.hpp"
#include "core/model/RawValue.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Tables of processes and of applications: which rows, in which order, in which words.
namespace ostrivane::cli {

enum class UsageSort { cpu, memory, disk, net, gpu, power, name };
constexpr std::array<RawText<UsageSort>, 7> rawTexts(EnumTag<UsageSort>) {
    return {{{UsageSort::cpu, "cpu"},
             {UsageSort::memory, "memory"},
             {UsageSort::disk, "disk"},
             {UsageSort::net, "net"},
             {UsageSort::gpu, "gpu"},
             {UsageSort::power, "power"},
             {UsageSort::name, "name"}}};
}

/// What a table lists.
enum class UsageSubject { applications, processes };

/// What a row of either table shows. Absent: the system does not tell.
struct UsageRow {
    std::string id; ///< tells it from the others of its table, from tick to tick
    std::string name;
    std::string idText;        ///< pid of a process, number of processes of an application
    std::optional<double> cpu; ///< cores
    std::optional<std::uint64_t> memory;
    std::optional<double> diskRead, diskWrite; ///< bytes per second
    std::optional<double> netIn, netOut;       ///< bytes per second
    std::optional<double> gpu;                 ///< fraction
    std::optional<double> powerW;
    bool isRestricted = false; ///< some of it could not be read
    std::size_t source = 0;    ///< where it stands in the snapshot's list
};

UsageRow usageRow(const ProcessSnapshot& process, std::size_t source);
/// @param members  in each figure that some process of the application shows, any value: a sum of nothing but hidden
///                 figures is hidden too, though the record has a 0
UsageRow usageRow(const ApplicationSnapshot& application, const UsageRow& members, std::size_t source);

/// Which rows are wanted.
struct UsageChoice {
    UsageSort sort = UsageSort::cpu;
    std::string filter;    ///< in any case, in the name, the path, the arguments or the user, or a pid; empty: all
    std::size_t limit = 0; ///< 0: all
};

/// The rows wanted, best first: largest first, names in alphabetical order; what is absent comes last. Equal rows keep
/// a fixed order, so that a live table does not dance. A first tick tells no rates.
std::vector<UsageRow> usageRows(const SystemSnapshot& snapshot, UsageSubject subject, const UsageChoice& choice);

/// The heading and the rows, columns aligned, in at most `width` columns. Where that is too narrow for all, reading and
/// writing, in and out become one column each; then the columns to the right go, but the one that `sort` goes by stays.
StyledLine usageHeading(UsageSubject subject, UsageSort sort, int width);
StyledLine usageLine(const UsageRow& row, UsageSort sort, int width);

/// The width at which nothing of these rows is cut off but names beyond any reason.
int fullUsageWidth(const std::vector<UsageRow>& rows);

} // namespace ostrivane::cli
