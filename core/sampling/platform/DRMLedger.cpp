#include "core/sampling/platform/DRMLedger.hpp"

#include "core/model/Saturating.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace ostrivane {

namespace {

constexpr double nanosPerSecond = 1e9;

/// What i915 and v3d, amdgpu, xe, and others call the part that draws.
constexpr std::array<std::string_view, 4> rendererNames{"render", "gfx", "rcs", "3d"};

bool countsCycles(const DRMUsage::Engine& engine) {
    return !engine.busyNanos && engine.cycles && engine.totalCycles;
}

} // namespace

DRMLedger::Client DRMLedger::firstSeen(const DRMUsage& usage, double now) {
    Client client{.at = now, .engines = {}, .nanos = 0};
    for (const DRMUsage::Engine& engine : usage.engines) {
        if (engine.busyNanos)
            client.nanos = saturatingSum(client.nanos, *engine.busyNanos / engine.capacity);
        if (engine.busyNanos || countsCycles(engine))
            client.engines.push_back({.name = engine.name,
                                      .counter = engine.busyNanos ? *engine.busyNanos : *engine.cycles,
                                      .total = engine.busyNanos ? 0 : *engine.totalCycles,
                                      .inCycles = !engine.busyNanos});
    }
    return client;
}

/// Takes the new counters over and answers the nanoseconds by which the client grew; `shares` get what it used of each
/// engine.
std::uint64_t DRMLedger::advance(Client& client, const DRMUsage& usage, double now, Shares& shares) {
    const double seconds = now - client.at;
    std::uint64_t grown = 0;
    Client fresh = firstSeen(usage, now);
    for (Engine& engine : fresh.engines) {
        const auto before = std::ranges::find(client.engines, engine.name, &Engine::name);
        if (before == client.engines.end() || before->inCycles != engine.inCycles)
            continue;
        const auto capacity = std::ranges::find(usage.engines, engine.name, &DRMUsage::Engine::name)->capacity;
        engine.counter = std::max(engine.counter, before->counter);
        const std::uint64_t added = engine.counter - before->counter;
        if (!engine.inCycles)
            grown = saturatingSum(grown, added / capacity);
        // The counter of possible cycles starts again at 0 when the chip was switched off: nothing is known then.
        if (seconds <= 0 || engine.total < before->total)
            continue;
        double share = 0;
        if (!engine.inCycles) {
            share = static_cast<double>(added) / static_cast<double>(capacity) / (seconds * nanosPerSecond);
        } else if (engine.total > before->total) {
            const auto possible = static_cast<double>(engine.total - before->total) * static_cast<double>(capacity);
            share = std::min(static_cast<double>(added) / possible, 1.0);
            grown = saturatingSum(grown, static_cast<std::uint64_t>(share * seconds * nanosPerSecond));
        }
        shares[engine.name] += share;
    }
    fresh.nanos = saturatingSum(client.nanos, grown);
    client = std::move(fresh);
    return grown;
}

void DRMLedger::update(std::vector<Held> held, double now) {
    std::ranges::stable_sort(held, {}, &Held::pid);
    std::map<Key, Client> present;
    PidMap<std::uint64_t> presentTimes;
    loads.clear();
    for (const Held& one : held) {
        const auto [place, isFirst] = present.try_emplace({one.usage->device(), one.usage->client});
        if (!isFirst)
            continue;
        Client& client = place->second;
        std::uint64_t grown = 0;
        if (const auto before = clients.find(place->first); before != clients.end()) {
            client = std::move(before->second);
            grown = advance(client, *one.usage, now, loads[one.usage->device()]);
        } else {
            client = firstSeen(*one.usage, now);
        }
        const auto known = times.find(one.pid);
        const auto total = presentTimes.try_emplace(one.pid, known == times.end() ? 0 : known->second).first;
        total->second = saturatingSum(total->second, known == times.end() ? client.nanos : grown);
    }
    clients = std::move(present);
    times = std::move(presentTimes);
}

std::optional<DRMLedger::Load> DRMLedger::load(const std::string& device) const {
    const auto found = loads.find(device);
    if (found == loads.end() || found->second.empty())
        return std::nullopt;
    Load load;
    for (const auto& [name, share] : found->second) {
        const double used = std::min(share, 1.0); // the readings of several clients are not quite at one moment
        load.busiest = std::max(load.busiest, used);
        if (std::ranges::find(rendererNames, name) != rendererNames.end())
            load.renderer = std::max(load.renderer.value_or(0), used);
    }
    return load;
}

} // namespace ostrivane
