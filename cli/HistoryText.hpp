#pragma once

#include "cli/Plot.hpp"
#include "core/history/AppRow.hpp"
#include "core/history/AppUsageSummary.hpp"
#include "core/history/HistoryRange.hpp"
#include "core/history/SystemRow.hpp"
#include "core/history/Totals.hpp"
#include "core/model/Described.hpp"

#include <optional>
#include <string>
#include <vector>

/// What the history holds, for a person to read. Everything is safe to print.
namespace ostrivane::cli {

/// How wide the text may be, and in which characters. Without a width nothing is cut off; drawings take 80 columns
/// then.
struct Layout {
    std::optional<int> width;
    Glyphs glyphs = Glyphs::blocks;
};

/// Drawings of the machine's figures up to `now`; with `withTable` their means over equal parts of the range too.
std::string rowsText(const std::vector<SystemRow>& rows, HistoryRange range, Date now, bool withTable,
                     const Layout& layout);

/// One application over a range.
struct ApplicationHistory {
    AppUsageSummary summary;
    std::vector<AppRow> rows;
};
BOOST_DESCRIBE_STRUCT(ApplicationHistory, (), (summary, rows))
static_assert(describesEveryMember<ApplicationHistory>);

std::string applicationText(const ApplicationHistory& application, HistoryRange range, Date now, const Layout& layout);

/// The applications that used most, as a table.
std::string topText(const std::vector<AppUsageSummary>& applications, HistoryRange range, std::optional<int> width);

std::string totalsText(const Totals& totals, HistoryRange range);

/// Which of `applications` a person means by `wanted`: its key, or its name in any case where only one has it.
struct Meant {
    const AppUsageSummary* application = nullptr; ///< null when there is none, or more than one
    std::string problem;                          ///< why it is null
};
Meant meantApplication(const std::vector<AppUsageSummary>& applications, const std::string& wanted, HistoryRange range);

} // namespace ostrivane::cli
