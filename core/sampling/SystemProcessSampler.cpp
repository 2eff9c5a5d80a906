#include "core/sampling/SystemProcessSampler.hpp"

#include "core/model/Saturating.hpp"

namespace ostrivane {

namespace {

constexpr double centisPerSecond = 100;
constexpr std::uint64_t bytesPerKB = 1024;

} // namespace

const PidMap<SystemProcessSampler::Entry>& SystemProcessSampler::sample(double now) {
    const auto totals = processes.totals();
    if (!totals)
        return entries;
    PidMap<std::uint64_t> centis;
    centis.reserve(totals->size());
    entries.clear();
    for (const auto& [pid, process] : *totals) {
        centis.emplace(pid, process.centis);
        entries[pid].rss = saturatingProduct(process.rssKB, bytesPerKB);
    }
    for (const auto& [pid, rate] : cpuTracker.rates(centis, now))
        if (totals->at(pid).rawStart == starts[pid]) // else the time before was another process's
            entries[pid].cpu = rate / centisPerSecond;
    starts.clear();
    for (const auto& [pid, process] : *totals)
        starts.emplace(pid, process.rawStart);
    return entries;
}

} // namespace ostrivane
