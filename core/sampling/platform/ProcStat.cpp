#include "core/sampling/platform/ProcStat.hpp"

#include "core/model/Saturating.hpp"
#include "core/sampling/platform/CPUList.hpp"
#include "core/sampling/platform/Scanner.hpp"

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

/// The columns behind the name. "guest" and "guest_nice" follow; they are in "user" and "nice" already.
enum Column { user, nice, system, idle, ioWait, irq, softIRQ, steal, columnCount };
constexpr std::size_t oldestColumns = 4; // what every kernel writes

std::optional<CPUTicks::Core> counters(Scanner words) {
    std::array<std::uint64_t, columnCount> columns{};
    for (std::size_t index = 0; index < columns.size(); ++index) {
        const std::string_view word = words.word();
        if (word.empty() && index >= oldestColumns)
            break;
        const auto count = Text::number<std::uint64_t>(word);
        if (!count)
            return std::nullopt;
        columns[index] = *count;
    }
    CPUTicks::Core core{};
    core[CPUTicks::user] = columns[user];
    core[CPUTicks::nice] = columns[nice];
    // Stolen time was wanted and not had: for whoever waits it is as good as used.
    core[CPUTicks::system] =
        saturatingSum(saturatingSum(columns[system], columns[irq]), saturatingSum(columns[softIRQ], columns[steal]));
    core[CPUTicks::idle] = saturatingSum(columns[idle], columns[ioWait]);
    return core;
}

} // namespace

std::optional<CPUTicks> ProcStat::parse(std::string_view text, Cores cores) {
    constexpr std::string_view prefix = "cpu";
    const std::size_t limit = std::min(cores.limit, static_cast<std::size_t>(CPUList::limit));
    CPUTicks ticks;
    ticks.wraps32 = false;
    ticks.perCore.resize(std::min(cores.seen, limit));
    bool any = false;
    for (Scanner lines(text); !lines.atEnd();) {
        const std::string_view line = lines.line();
        if (!line.starts_with(prefix)) {
            if (any)
                break; // the cores stand together, and the line of the interrupts behind them is long
            continue;
        }
        Scanner words(line);
        // The line of all cores together has no number in its name.
        const auto number = Text::number<std::size_t>(words.word().substr(prefix.size()));
        if (!number || *number >= limit)
            continue;
        const auto core = counters(words);
        if (!core)
            continue;
        if (*number >= ticks.perCore.size())
            ticks.perCore.resize(*number + 1);
        ticks.perCore[*number] = *core;
        any = true;
    }
    return any ? std::optional(std::move(ticks)) : std::nullopt;
}

} // namespace ostrivane
