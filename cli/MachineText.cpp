#include "cli/MachineText.hpp"

#include "core/model/Formatters.hpp"
#include "core/model/Text.hpp"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cmath>
#include <ctime>

namespace ostrivane::cli::MachineText {

namespace {

std::string unavailable() {
    return std::string(Formatters::unavailable);
}

/// The records' empty values, which a reading that failed leaves: no machine is without cores or memory.
bool isUnknown(const CPUSnapshot& cpu) {
    return cpu.cores.empty();
}

bool isUnknown(const MemorySnapshot& memory) {
    return memory.total == 0 || memory == MemorySnapshot::empty;
}

} // namespace

std::string machine(const SystemSnapshot& snapshot) {
    std::string name = Text::visible(snapshot.macModel);
    if (snapshot.macModelIdentifier.empty() || snapshot.macModel.find(snapshot.macModelIdentifier) != std::string::npos)
        return name;
    return fmt::format("{} ({})", name, Text::visible(snapshot.macModelIdentifier));
}

std::string time(Date date) {
    constexpr double farthest = 1e11; // three thousand years from now
    if (!(std::abs(date.seconds) < farthest))
        return std::string(Formatters::dash);
    const auto seconds = static_cast<std::time_t>(date.seconds);
    std::tm local{};
    if (!localtime_r(&seconds, &local))
        return std::string(Formatters::dash);
    return fmt::format("{:%Y-%m-%d %H:%M:%S}", local);
}

std::string uptime(const CPUSnapshot& cpu) {
    return "up " + (cpu.uptime > 0 ? Formatters::duration(cpu.uptime) : std::string(Formatters::dash));
}

std::string cores(const CPUSnapshot& cpu) {
    if (isUnknown(cpu))
        return unavailable();
    std::string text = fmt::format("{} {}", cpu.logicalCoreCount, cpu.logicalCoreCount == 1 ? "core" : "cores");
    if (cpu.efficiencyCoreCount > 0)
        text += fmt::format(": {} performance, {} efficiency", cpu.performanceCoreCount, cpu.efficiencyCoreCount);
    return text;
}

std::string usage(const CPUSnapshot& cpu) {
    return isUnknown(cpu) ? std::string(Formatters::dash) : Formatters::percent(cpu.usage, 0);
}

std::string load(const CPUSnapshot& cpu) {
    if (isUnknown(cpu))
        return unavailable();
    return fmt::format("user {}, system {}, idle {}", Formatters::percent(cpu.user, 0),
                       Formatters::percent(cpu.system, 0), Formatters::percent(cpu.idle, 0));
}

std::string loadAverages(const CPUSnapshot& cpu) {
    if (isUnknown(cpu))
        return unavailable();
    return fmt::format("{}, {}, {}", Formatters::decimal(cpu.loadAverage[0], 2),
                       Formatters::decimal(cpu.loadAverage[1], 2), Formatters::decimal(cpu.loadAverage[2], 2));
}

std::string mark(CoreLoad::Kind kind) {
    switch (kind) {
    case CoreLoad::Kind::performance:
        return "P";
    case CoreLoad::Kind::efficiency:
        return "E";
    case CoreLoad::Kind::unknown:
        return " ";
    }
    return " ";
}

std::string used(const MemorySnapshot& memory) {
    if (isUnknown(memory))
        return unavailable();
    return fmt::format("{} of {} ({})", Formatters::bytes(memory.used), Formatters::bytes(memory.total),
                       Formatters::percent(memory.usedFraction(), 0));
}

std::vector<Part> parts(const MemorySnapshot& memory) {
    if (isUnknown(memory))
        return {};
    return {{"App", memory.app},
            {"Wired", memory.wired},
            {"Compressed", memory.compressed},
            {"Cached", memory.cached},
            {"Free", memory.free}};
}

std::string pressure(const MemorySnapshot& memory) {
    if (isUnknown(memory))
        return unavailable();
    return fmt::format("{}, {} available", label(memory.pressure),
                       Formatters::percent(static_cast<double>(memory.availablePercent) / 100, 0));
}

std::string swap(const MemorySnapshot& memory) {
    if (isUnknown(memory))
        return unavailable();
    if (memory.swapTotal == 0)
        return "none";
    return fmt::format("{} of {}, {} pages/s in, {} pages/s out", Formatters::bytes(memory.swapUsed),
                       Formatters::bytes(memory.swapTotal), Formatters::decimal(memory.swapInRate, 0),
                       Formatters::decimal(memory.swapOutRate, 0));
}

} // namespace ostrivane::cli::MachineText
