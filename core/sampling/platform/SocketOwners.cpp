#include "core/sampling/platform/SocketOwners.hpp"

#include <algorithm>
#include <tuple>

namespace ostrivane {

const SocketOwnership& SocketOwners::refresh(const SocketInodes& wanted) {
    takeProcesses();
    dropUnwanted(wanted);
    checkPlaces();
    chooseSought(wanted);
    search(wanted);
    effortLeft = limits.effort; // of the next one
    return known;
}

void SocketOwners::takeProcesses() {
    const std::vector<std::int32_t> pids = source.pids();
    const ProcessSet now(pids.begin(), pids.end());
    std::vector<std::int32_t> gone;
    for (const std::int32_t pid : living)
        if (!now.contains(pid))
            gone.push_back(pid);
    for (const std::int32_t pid : holders)
        if (now.contains(pid) && source.startOf(pid) != known.processes[pid])
            gone.push_back(pid);
    for (const std::int32_t pid : gone)
        forget(pid);

    const auto earlier = static_cast<std::ptrdiff_t>(arrivals.size());
    for (const std::int32_t pid : pids)
        if (living.insert(pid).second)
            arrivals.push_back(pid);
    // Ids grow with time, but for the rare moment when they start again.
    std::sort(arrivals.begin() + earlier, arrivals.end());
}

void SocketOwners::forget(std::int32_t pid) {
    loseSightOf(pid);
    living.erase(pid);
    std::erase(arrivals, pid);
    if (walk && walk->pid == pid)
        walk.reset();
}

void SocketOwners::loseSightOf(std::int32_t pid) {
    holders.erase(pid);
    known.processes.erase(pid);
    boost::unordered::erase_if(known.places, [pid](const auto& entry) { return entry.second.pid == pid; });
}

void SocketOwners::dropUnwanted(const SocketInodes& wanted) {
    boost::unordered::erase_if(known.places, [&](const auto& entry) { return !wanted.contains(entry.first); });
    boost::unordered::erase_if(unheld,
                               [&](auto& entry) { return !wanted.contains(entry.first) || --entry.second <= 0; });
}

void SocketOwners::checkPlaces() {
    struct Check {
        std::pair<std::int32_t, int> place;
        SocketInode inode;
    };
    std::vector<Check> checks;
    checks.reserve(known.places.size());
    for (const auto& [inode, place] : known.places)
        checks.push_back({{place.pid, place.descriptor}, inode});
    std::sort(checks.begin(), checks.end(), [](const Check& a, const Check& b) { return a.place < b.place; });
    // Behind the last one that was checked, so that each has its turn where there are more than one call may check.
    const auto first =
        std::find_if(checks.begin(), checks.end(), [&](const Check& c) { return lastChecked < c.place; });
    std::rotate(checks.begin(), first, checks.end());
    checks.resize(std::min(checks.size(), limits.checks));

    std::int32_t opened = 0;
    std::unique_ptr<Descriptors> descriptors;
    for (const Check& check : checks) {
        const auto [pid, descriptor] = check.place;
        if (pid != opened) {
            descriptors = source.open(pid);
            opened = pid;
        }
        if (!descriptors || descriptors->socketAt(descriptor) != check.inode)
            known.places.erase(check.inode);
        lastChecked = check.place;
    }
}

void SocketOwners::chooseSought(const SocketInodes& wanted) {
    known.sought.clear();
    for (const SocketInode inode : wanted)
        if (!known.places.contains(inode) && !unheld.contains(inode))
            known.sought.insert(inode);
}

void SocketOwners::search(const SocketInodes& wanted) {
    walkedNow.clear();
    while (effortLeft > 0) {
        if (!walk && !beginWalk())
            return;
        const auto descriptor =
            walk->isArrival || !known.sought.empty() ? walk->descriptors->next() : std::optional<int>();
        spend(stepEffort);
        if (!descriptor) {
            walk.reset();
            continue;
        }
        if (walk->known.contains(*descriptor))
            continue;
        spend(readEffort);
        if (const auto inode = walk->descriptors->socketAt(*descriptor); inode && wanted.contains(*inode))
            claim(*inode, {.pid = walk->pid, .descriptor = *descriptor});
    }
}

bool SocketOwners::beginWalk() {
    while (effortLeft > 0) {
        const bool isArrival = !arrivals.empty();
        std::optional<std::int32_t> pid;
        if (isArrival) {
            pid = arrivals.back();
            arrivals.pop_back();
        } else {
            pid = nextOfRound();
        }
        if (!pid)
            return false;
        spend(openEffort);
        walkedNow.insert(*pid);
        auto descriptors = source.open(*pid);
        const auto start = descriptors ? source.startOf(*pid) : std::nullopt;
        if (!start) {
            loseSightOf(*pid);
            continue;
        }
        known.processes[*pid] = *start;
        walk = Walk{.pid = *pid, .isArrival = isArrival, .descriptors = std::move(descriptors), .known = {}};
        if (holders.contains(*pid))
            for (const auto& [inode, place] : known.places)
                if (place.pid == *pid)
                    walk->known.insert(place.descriptor);
        return true;
    }
    return false;
}

std::optional<std::int32_t> SocketOwners::nextOfRound() {
    while (!known.sought.empty()) {
        if (!queue.empty()) {
            const std::int32_t pid = queue.back();
            queue.pop_back();
            return pid;
        }
        endRound();
        beginRound();
    }
    queue.clear();
    roundSeeks.clear();
    return std::nullopt;
}

void SocketOwners::beginRound() {
    roundSeeks = known.sought;
    for (const std::int32_t pid : living)
        if (!walkedNow.contains(pid))
            queue.push_back(pid);
    const auto rank = [this](std::int32_t pid) {
        const auto process = known.processes.find(pid);
        return std::tuple(holders.contains(pid), process == known.processes.end() ? 0 : process->second, pid);
    };
    std::sort(queue.begin(), queue.end(), [&](std::int32_t a, std::int32_t b) { return rank(a) < rank(b); });
}

void SocketOwners::endRound() {
    for (const SocketInode inode : roundSeeks)
        if (known.sought.erase(inode) > 0)
            unheld[inode] = limits.restingRefreshes;
    roundSeeks.clear();
}

void SocketOwners::claim(SocketInode inode, const SocketOwnership::Place& place) {
    const auto [found, isFirst] = known.places.try_emplace(inode, place);
    if (!isFirst && isYounger(place.pid, found->second.pid))
        found->second = place;
    holders.insert(place.pid);
    known.sought.erase(inode);
    unheld.erase(inode);
}

bool SocketOwners::isYounger(std::int32_t pid, std::int32_t other) const {
    return std::pair(known.processes.at(pid), pid) > std::pair(known.processes.at(other), other);
}

} // namespace ostrivane
