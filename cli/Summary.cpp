#include "cli/Summary.hpp"

#include "cli/MachineText.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/SystemSnapshot.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace ostrivane::cli {

namespace {

constexpr std::size_t coresPerLine = 4;

void line(std::string& out, std::string_view label, std::string_view value) {
    fmt::format_to(std::back_inserter(out), "{:<12}{}\n", label, value);
}

void coreLines(std::string& out, const std::vector<CoreLoad>& cores) {
    for (std::size_t first = 0; first < cores.size(); first += coresPerLine) {
        std::string row;
        for (std::size_t index = first; index < std::min(first + coresPerLine, cores.size()); ++index)
            fmt::format_to(std::back_inserter(row), "{:>3} {} {:>4}   ", cores[index].id,
                           MachineText::mark(cores[index].kind), Formatters::percent(cores[index].usage, 0));
        line(out, first == 0 ? "Each core" : "", row.substr(0, row.find_last_not_of(' ') + 1));
    }
}

} // namespace

std::string summary(const SystemSnapshot& snapshot) {
    const CPUSnapshot& cpu = snapshot.cpu;
    const MemorySnapshot& memory = snapshot.memory;
    std::string out = fmt::format("{}\n{}, {}\n\n", MachineText::machine(snapshot),
                                  MachineText::time(snapshot.timestamp), MachineText::uptime(cpu));
    line(out, "Processor", Text::visible(cpu.brand));
    line(out, "", MachineText::cores(cpu));
    line(out, "Load", fmt::format("{} ({})", MachineText::usage(cpu), MachineText::load(cpu)));
    line(out, "Averages", MachineText::loadAverages(cpu) + " over 1, 5 and 15 minutes");
    coreLines(out, cpu.cores);
    out += '\n';
    line(out, "Memory", MachineText::used(memory));
    for (const MachineText::Part& part : MachineText::parts(memory))
        line(out, "", fmt::format("{:<12}{:>9}", part.name, Formatters::bytes(part.bytes)));
    line(out, "Pressure", MachineText::pressure(memory));
    line(out, "Swap", MachineText::swap(memory));
    return out;
}

} // namespace ostrivane::cli
