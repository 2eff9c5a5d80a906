#include "core/attribution/AppRules.hpp"

#include "core/attribution/DesktopEntryIndex.hpp"
#include "core/attribution/PathText.hpp"
#include "core/attribution/ProcessTable.hpp"

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

using AppGrouper::Input;
using AppGrouper::Process;
using Bundle = InstalledApplication;
using Kind = ControlGroupUnit::Kind;

std::string executable(std::string_view name) {
    return std::string(AppGrouper::executablePrefix) + std::string(name);
}

std::string pathOf(const Bundle* bundle) {
    return bundle ? bundle->path : std::string();
}

// Rules of a process among the others.

std::string_view ownApplication(const Process& process, const ProcessTable&) {
    return process.own->application;
}

/// macOS: whom the system holds responsible. Linux: the first process of the unit.
std::string_view responsibleProcess(const Process& process, const ProcessTable& all) {
    const Process* responsible = process.responsiblePID == process.pid ? nullptr : all.find(process.responsiblePID);
    return responsible && !responsible->own->neverOwns ? std::string_view(responsible->own->application)
                                                       : std::string_view();
}

std::string_view unitEntry(const Process& process, const ProcessTable&) {
    return process.own->unitEntry;
}

std::string_view ancestors(const Process& process, const ProcessTable& all) {
    constexpr int furthest = 16;
    constexpr std::int32_t firstOfUser = 2; // 1 starts every daemon: going there would give them to anyone
    std::int32_t pid = process.ppid;
    for (int step = 0; step < furthest && pid >= firstOfUser; ++step) {
        const Process* ancestor = all.find(pid);
        if (!ancestor || ancestor->own->endsAncestry)
            break;
        if (!ancestor->own->application.empty() && !ancestor->own->neverOwns)
            return ancestor->own->application;
        pid = ancestor->ppid;
    }
    return {};
}

std::string_view ownName(const Process& process, const ProcessTable&) {
    return process.own->name;
}

// Rules of a process by itself, on both platforms.

std::string notable(const Input& input, const AppRules& rules) {
    constexpr std::size_t cutAt = 15; // bytes that Linux keeps of a command name
    for (const std::string_view name : rules.tables.notableProcesses)
        if (input.name == name || (input.name.size() == cutAt && input.name == name.substr(0, cutAt)))
            return executable(name);
    return {};
}

std::string program(const Input& input, const AppRules&) {
    const std::string_view base = input.path ? PathText::lastComponent(*input.path) : std::string_view();
    return executable(base.empty() ? std::string_view(input.name) : base);
}

// Rules of macOS.

std::string enclosingBundle(const Input& input, const AppRules& rules) {
    if (!input.path)
        return {};
    return AppGrouper::outermostAppBundle(*input.path, rules.exists, rules.home).value_or(std::string());
}

std::string kernelTask(const Input& input, const AppRules&) {
    return input.pid == 0 ? executable("kernel_task") : std::string();
}

std::string systemPath(const Input& input, const AppRules& rules) {
    return std::string(AppGrouper::isSystemPath(input.path, rules.tables) ? AppGrouper::systemKey : std::string_view());
}

// Rules of Linux.

std::string sandbox(const Input& input, const AppRules& rules) {
    const ControlGroupUnit& unit = input.unit;
    if (unit.isContainer())
        return executable(unit.kind == Kind::docker ? "Docker" : unit.kind == Kind::podman ? "Podman" : "Containers");
    if (unit.kind == Kind::snap) {
        const Bundle* bundle = rules.installed->bundleForID(unit.id + "_" + unit.snapApp);
        return bundle ? bundle->path : executable(unit.id);
    }
    const std::string& flatpak = unit.kind == Kind::flatpak ? unit.id : input.flatpakID.value_or(std::string());
    if (flatpak.empty())
        return {};
    const Bundle* bundle = rules.installed->bundleForID(flatpak);
    return bundle ? bundle->path : executable(flatpak);
}

/// An AppImage mounts itself below "/tmp" and runs from there, but for the process that keeps the mount.
std::optional<std::string> appImageOf(const Input& input) {
    constexpr std::string_view mounts = "/tmp/.mount_", extension = ".AppImage";
    if (input.path->ends_with(extension))
        return input.path;
    const bool isMounted = input.path->starts_with(mounts) && input.appImage && input.appImage->starts_with('/');
    return isMounted ? input.appImage : std::nullopt;
}

std::string installedProgram(const Input& input, const AppRules& rules) {
    if (!input.path || input.foreignRoot)
        return {};
    if (const Bundle* bundle = rules.installed->bundleForPath(*input.path))
        return bundle->path;
    const auto image = appImageOf(input);
    const Bundle* bundle = image ? rules.installed->bundleForProgram(*image) : nullptr;
    return bundle ? bundle->path : image.value_or(std::string());
}

std::string entryOfUnit(const Input& input, const AppRules& rules) {
    // What a launcher starts without a unit of its own is not the launcher's.
    if (input.unit.kind != Kind::application || matchesAny(rules.tables.neverOwners, input.unit.id))
        return {};
    return pathOf(rules.installed->bundleForID(input.unit.id));
}

std::string kernelThread(const Input& input, const AppRules&) {
    return input.isKernelThread ? executable("kernel") : std::string();
}

bool isWineLoader(std::string_view program) {
    return program.starts_with("wine") && program.ends_with("-preloader");
}

/// The program that Wine runs, or its server; empty for everything else.
std::string_view wineProgram(const Input& input) {
    const std::string_view base = input.path ? PathText::lastComponent(*input.path) : std::string_view();
    if (base.starts_with("wineserver"))
        return base;
    if (!isWineLoader(base))
        return {};
    const std::string_view started = input.firstArgument ? *input.firstArgument : std::string_view();
    const std::string_view windowsName = started.substr(started.find_last_of("\\/") + 1);
    return windowsName.empty() ? std::string_view(input.name) : windowsName;
}

/// Programs that the user starts by name lie in one folder with those of the system; their unit and terminal tell them
/// apart, or a training run started as `python3` would vanish among the services.
std::string systemProcess(const Input& input, const AppRules& rules) {
    if (!wineProgram(input).empty())
        return {};
    const bool couldBeAnyones =
        input.isOwn && (!input.path || matchesAny(rules.tables.commandFolders, PathText::parent(*input.path)));
    if (!couldBeAnyones)
        return systemPath(input, rules);
    const bool isService = input.unit.kind == Kind::service || (input.unit.kind == Kind::none && !input.hasTerminal);
    return std::string(isService ? AppGrouper::systemKey : std::string_view());
}

std::string windowsProgram(const Input& input, const AppRules& rules) {
    const std::string_view name = wineProgram(input);
    if (name.empty())
        return {};
    std::string lower(name); // Windows does not tell the cases apart
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return executable(matchesAny(rules.tables.wineServices, lower) ? "Wine" : name);
}

// The lists.

constexpr std::array<AppRules::Rule, 4> macOSOrder{responsibleProcess, ownApplication, ancestors, ownName};
constexpr std::array<AppRules::OwnRule, 1> macOSApplication{enclosingBundle};
constexpr std::array<AppRules::OwnRule, 4> macOSName{kernelTask, notable, systemPath, program};

// A child inherits its unit: were the unit asked first, a browser started in a terminal would count for the terminal.
constexpr std::array<AppRules::Rule, 5> linuxOrder{ownApplication, responsibleProcess, unitEntry, ancestors, ownName};
constexpr std::array<AppRules::OwnRule, 2> linuxApplication{sandbox, installedProgram};
constexpr std::array<AppRules::OwnRule, 1> linuxUnitEntry{entryOfUnit};
constexpr std::array<AppRules::OwnRule, 5> linuxName{kernelThread, notable, systemProcess, windowsProgram, program};

} // namespace

AppRules AppRules::forMacOS(std::function<bool(const std::string&)> exists, std::string home) {
    return {.tables = macOSAppTables(),
            .order = macOSOrder,
            .application = macOSApplication,
            .unitEntry = {},
            .name = macOSName,
            .exists = std::move(exists),
            .home = std::move(home),
            .installed = nullptr};
}

AppRules AppRules::forLinux(std::shared_ptr<const DesktopEntryIndex> installed) {
    return {.tables = linuxAppTables(),
            .order = linuxOrder,
            .application = linuxApplication,
            .unitEntry = linuxUnitEntry,
            .name = linuxName,
            .exists = {},
            .home = {},
            .installed = std::move(installed)};
}

} // namespace ostrivane
