#include "core/sampling/platform/ProcPIDStat.hpp"

#include "core/model/Saturating.hpp"
#include "core/sampling/platform/Processes.hpp"
#include "core/sampling/platform/Scanner.hpp"

#include <algorithm>
#include <limits>

namespace ostrivane {

namespace {

/// Reads the fields behind the name one after the other, by the numbers that the manual gives them.
class Fields {
public:
    explicit Fields(std::string_view text) : scanner(text) {}

    std::string_view word(int number) {
        for (; next < number; ++next)
            scanner.word();
        ++next;
        return scanner.word();
    }

    template <class Number>
    std::optional<Number> number(int number) {
        return Text::number<Number>(word(number));
    }

private:
    Scanner scanner;
    int next = 3; ///< the first field behind the name
};

} // namespace

std::uint32_t ProcPIDStat::status() const {
    switch (state) {
    case 'R':
        return ProcessInfo::running;
    case 'S':
    case 'D':
    case 'I':
    case 'P':
    case 'K':
    case 'W':
        return ProcessInfo::sleeping;
    case 'T':
    case 't':
        return ProcessInfo::stopped;
    case 'Z':
    case 'X':
    case 'x':
        return threads > 1 ? ProcessInfo::sleeping : ProcessInfo::zombie;
    default:
        return ProcessInfo::unknown;
    }
}

SystemProcessTotals ProcPIDStat::totals(std::uint64_t ticksPerSecond, std::uint64_t bytesPerPage) const {
    const std::uint64_t ticks = saturatingSum(userTime, systemTime);
    return {.centis = ticksPerSecond == 0 ? 0 : saturatingProduct(ticks, 100) / ticksPerSecond,
            .rssKB = saturatingProduct(resident, bytesPerPage) / 1024,
            .rawStart = start};
}

std::optional<ProcPIDStat> ProcPIDStat::parse(std::string_view text) {
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return std::nullopt;
    ProcPIDStat stat;
    stat.name = text.substr(open + 1, close - open - 1);
    text.remove_prefix(close + 1);
    if (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);

    Fields fields(text);
    const std::string_view state = fields.word(3);
    const auto ppid = fields.number<std::int32_t>(4);
    const auto ttyNr = fields.number<std::int32_t>(7);
    const auto flags = fields.number<std::uint64_t>(9);
    const auto userTime = fields.number<std::uint64_t>(14);
    const auto systemTime = fields.number<std::uint64_t>(15);
    const auto threads = fields.number<std::int64_t>(20);
    const auto start = fields.number<std::uint64_t>(22);
    const auto resident = fields.number<std::int64_t>(24);
    if (state.size() != 1 || !ppid || !ttyNr || !flags || !userTime || !systemTime || !threads || !start || !resident)
        return std::nullopt;
    stat.state = state.front();
    stat.ppid = *ppid;
    stat.ttyNr = *ttyNr;
    stat.flags = *flags;
    stat.userTime = *userTime;
    stat.systemTime = *systemTime;
    stat.threads = *threads;
    stat.start = *start;
    stat.resident = static_cast<std::uint64_t>(std::max<std::int64_t>(*resident, 0));
    return stat;
}

} // namespace ostrivane
