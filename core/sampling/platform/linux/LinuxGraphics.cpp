#include "core/sampling/platform/linux/LinuxGraphics.hpp"

#include "core/model/Saturating.hpp"
#include "core/model/Text.hpp"
#include "core/sampling/platform/GraphicsDrivers.hpp"
#include "core/sampling/platform/linux/NVMLLoading.hpp"
#include "core/sampling/platform/linux/PCINames.hpp"
#include "core/sampling/platform/linux/RuntimePower.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include <time.h>

namespace ostrivane {

namespace {

const std::string drmFolder = "sys/class/drm/";

/// Within a tick clients are asked for once. Over a shorter time the counters, which drivers bring up to date now and
/// then, say little.
constexpr double shortestIntervalS = 0.25;

/// A chip that is part of the processor has this much memory set aside for it at most.
constexpr std::uint64_t largestSetAside = std::uint64_t(4) << 30;

/// Goes on while the machine sleeps, as the interval over which the counters grew does.
double bootSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// A recorded tree has no library to go with it.
NVIDIAChips::LoadLibrary libraryFor(const RootFolder& root) {
    if (!root.isRunningSystem())
        return [] { return std::optional<NVMLLibrary>(); };
    return [] { return loadNVML(); };
}

std::string lastPart(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

/// The number of "card12"; its connectors are called "card12-HDMI-A-1".
std::optional<int> cardNumber(std::string_view name) {
    constexpr std::string_view prefix = "card";
    return name.starts_with(prefix) ? Text::number<int>(name.substr(prefix.size())) : std::nullopt;
}

std::string driverOf(const RootFolder& root, const std::string& device) {
    if (const auto link = root.link(device + "/driver"))
        return lastPart(*link);
    const std::string events = root.read(device + "/uevent").value_or("");
    constexpr std::string_view key = "DRIVER=";
    for (const std::string_view line : Text::lines(events))
        if (line.starts_with(key))
            return std::string(line.substr(key.size()));
    return {};
}

/// A driver that computes offers a node for just that beside the card. Where nodes are not listed, nothing is known.
bool lacksRenderNode(const RootFolder& root, const std::string& device) {
    const auto nodes = root.list(device + "/drm");
    return !nodes.empty() &&
           std::ranges::none_of(nodes, [](const std::string& node) { return node.starts_with("renderD"); });
}

/// With a second to spare, for the kernel counts from the last question.
std::optional<double> sleepDelay(const RootFolder& root, const std::string& device) {
    const std::string control = root.read(device + "/power/control").value_or("");
    if (Text::trimmed(control) != "auto")
        return std::nullopt;
    constexpr int usualMillis = 5000;
    const std::string delay = root.read(device + "/power/autosuspend_delay_ms").value_or("");
    const int millis = Text::number<int>(Text::trimmed(delay)).value_or(usualMillis); // below 0: never
    return millis >= 0 ? std::optional(millis / 1000.0 + 1) : std::nullopt;
}

std::optional<std::uint64_t> number(KeptFile& file) {
    const auto text = file.read();
    return text ? Text::number<std::uint64_t>(Text::trimmed(*text)) : std::nullopt;
}

} // namespace

LinuxGraphics::LinuxGraphics(const RootFolder& folder) : LinuxGraphics(folder, bootSeconds, libraryFor(folder)) {}

LinuxGraphics::LinuxGraphics(const RootFolder& folder, Seconds clock, NVIDIAChips::LoadLibrary loadLibrary)
    : root(folder), seconds(std::move(clock)), clients(folder), nvidia(folder, std::move(loadLibrary)) {}

/// Cards come and go (docks, modules); what is known of them stands until one does.
void LinuxGraphics::findCards() {
    std::vector<std::pair<int, std::string>> names;
    for (std::string& name : root.list("sys/class/drm"))
        if (const auto number = cardNumber(name))
            names.emplace_back(*number, std::move(name));
    std::ranges::sort(names);
    std::vector<std::string> found;
    found.reserve(names.size());
    for (const auto& [number, name] : names)
        found.push_back(name + " " + root.link(drmFolder + name + "/device").value_or(""));
    if (found == links)
        return;
    links = std::move(found);
    cards.clear();
    runtimeStatus.clear();
    for (const auto& [number, name] : names) {
        Card made = card(name, root.link(drmFolder + name + "/device").value_or(""));
        const bool ownReader = made.driver == "nvidia";
        if (!ownReader && !GraphicsDrivers::onlyDisplays(made.driver) &&
            !lacksRenderNode(root, drmFolder + name + "/device"))
            cards.push_back(std::move(made));
    }
}

/// Names, numbers and links of a device are kept by the bus: asking for them wakes nothing.
LinuxGraphics::Card LinuxGraphics::card(const std::string& node, const std::string& target) const {
    const std::string device = drmFolder + node + "/device";
    const auto file = [&](const char* name) {
        const std::string path = device + "/" + name;
        return root.exists(path) ? std::optional(KeptFile(root, path)) : std::nullopt;
    };
    Card made{.node = node,
              .address = lastPart(target),
              .driver = driverOf(root, device),
              .name = PCINames(root).name(device),
              .busy = file("gpu_busy_percent"),
              .ownMemory = file("mem_info_vram_used"),
              .sharedMemory = file("mem_info_gtt_used"),
              .countsShared = std::nullopt,
              .sleepDelayS = sleepDelay(root, device),
              .last = {}};
    if (!made.name && !root.exists(device + "/vendor") && !made.driver.empty())
        made.name = Text::repaired(made.driver); // a board's chip, which no list names
    return made;
}

bool LinuxGraphics::isAwake(const std::string& node) {
    const auto known = awake.find(node);
    if (known != awake.end())
        return known->second;
    const auto file = runtimeStatus.try_emplace(node, root, drmFolder + node + "/device/power/runtime_status").first;
    const auto status = file->second.read();
    return awake[node] = !status || !sleeps(*status);
}

/// A chip within the processor has little memory set aside for it and takes the rest from the system's. A board of its
/// own may bear a name.
bool LinuxGraphics::hasNoOwnMemory(const Card& card) const {
    const std::string device = drmFolder + card.node + "/device";
    const std::string total = root.read(device + "/mem_info_vram_total").value_or("");
    const auto bytes = Text::number<std::uint64_t>(Text::trimmed(total));
    const std::string board = root.read(device + "/product_name").value_or("");
    return bytes && *bytes <= largestSetAside && Text::trimmed(board).empty();
}

std::optional<std::uint64_t> LinuxGraphics::memoryInUse(Card& card) {
    const auto own = card.ownMemory ? number(*card.ownMemory) : std::nullopt;
    if (!own)
        return std::nullopt;
    if (!card.countsShared)
        card.countsShared = hasNoOwnMemory(card);
    if (!*card.countsShared || !card.sharedMemory)
        return own;
    const auto shared = number(*card.sharedMemory);
    return shared ? std::optional(saturatingSum(*own, *shared)) : std::nullopt;
}

/// Clients name a chip by its address on the PCI bus; one that is on none, by the driver.
std::optional<DRMLedger::Load> LinuxGraphics::load(const Card& card) const {
    const auto byAddress = ledger.load(card.address);
    return byAddress ? byAddress : ledger.load(card.driver);
}

AcceleratorStatistics LinuxGraphics::asked(Card& card) {
    AcceleratorStatistics figures;
    const auto used = load(card);
    if (card.busy) {
        if (const auto percent = number(*card.busy)) // at times EBUSY or EINVAL
            figures.devicePercent = static_cast<double>(*percent);
    } else if (used) {
        figures.devicePercent = used->busiest * 100;
    }
    if (used && used->renderer)
        figures.rendererPercent = *used->renderer * 100;
    figures.memoryInUse = memoryInUse(card);
    return figures;
}

/// Every question puts off the sleep of a chip that does nothing. Unless someone looks at its figures, it is then left
/// alone for long enough to fall asleep, and the last figures stand.
AcceleratorStatistics LinuxGraphics::statistics(Card& card, double now) {
    if (!isAwake(card.node)) {
        card.restsUntil = now;
        AcceleratorStatistics asleep;
        asleep.devicePercent = 0;
        return asleep;
    }
    if (card.restsUntil > now && !pageShown)
        return card.last;
    card.last = asked(card);
    if (card.busy && card.sleepDelayS && card.last.devicePercent == 0.0)
        card.restsUntil = now + *card.sleepDelayS;
    return card.last;
}

void LinuxGraphics::readClients(double now) {
    if (cards.empty() || (clientsReadAt && now >= *clientsReadAt && now - *clientsReadAt < shortestIntervalS))
        return;
    clientsReadAt = now;
    ledger.update(clients.read(now, [this](const std::string& node) { return isAwake(node); }), now);
}

std::vector<AcceleratorReading> LinuxGraphics::accelerators() {
    const double now = seconds();
    awake.clear();
    findCards();
    readClients(now);
    std::vector<AcceleratorReading> found;
    for (Card& card : cards)
        found.push_back({.name = card.name, .statistics = statistics(card, now)});
    for (AcceleratorReading& chip : nvidia.accelerators(now, pageShown))
        found.push_back(std::move(chip));
    return found;
}

PidMap<std::uint64_t> LinuxGraphics::processTimes() {
    const double now = seconds();
    awake.clear();
    findCards();
    readClients(now);
    PidMap<std::uint64_t> times = ledger.processTimes();
    for (const auto& [pid, nanos] : nvidia.processTimes(now)) {
        std::uint64_t& total = times[pid];
        total = saturatingSum(total, nanos);
    }
    return times;
}

} // namespace ostrivane
