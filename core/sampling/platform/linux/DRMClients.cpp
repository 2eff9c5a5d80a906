#include "core/sampling/platform/linux/DRMClients.hpp"

#include "core/model/Text.hpp"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include <unistd.h>

namespace ostrivane {

namespace {

constexpr double listingPauseS = 2;
constexpr std::string_view nodeFolder = "/dev/dri/";
constexpr int costOfOpening = 4; // a folder, measured in links

} // namespace

/// New processes get their first look before all others.
void DRMClients::followProcesses(double now) {
    if (listedAt && now >= *listedAt && now - *listedAt < listingPauseS)
        return;
    listedAt = now;
    std::map<std::int32_t, Process> present;
    for (const std::string& name : root.list("proc")) {
        const auto pid = Text::number<std::int32_t>(name);
        if (!pid || *pid <= 0)
            continue;
        auto known = processes.extract(*pid);
        if (known)
            present.insert(std::move(known));
        else
            present[*pid].folder = "proc/" + name;
    }
    processes = std::move(present);
}

bool DRMClients::beginLook(Process& process) {
    FileDescriptor folder = root.open(process.folder + "/fd");
    if (!folder.isOpen())
        return false;
    process.underWay.reset(::fdopendir(folder.get()));
    if (process.underWay)
        folder.release(); // the stream closes it
    return process.underWay != nullptr;
}

void DRMClients::endLook(Process& process, double now) {
    process.underWay.reset();
    process.nextLook = now + process.pause;
    process.pause = std::min(process.pause * 2, longestPauseS);
}

/// Keeps a descriptor that leads to a chip. Of several that belong to one client all but one are dropped once they have
/// been read.
void DRMClients::note(Process& process, std::string_view number) {
    std::array<char, 64> target; // a longer one leads elsewhere
    const ssize_t size =
        ::readlinkat(::dirfd(process.underWay.get()), std::string(number).c_str(), target.data(), target.size());
    const std::string_view link(target.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    if (!link.starts_with(nodeFolder) || link.size() == target.size())
        return;
    const std::string_view node = link.substr(nodeFolder.size());
    const bool isKnown =
        std::ranges::find(process.descriptors, number, &Descriptor::number) != process.descriptors.end();
    if (isKnown || node.find('/') != std::string_view::npos || clientCount >= clientsInAll ||
        process.descriptors.size() >= clientsPerProcess)
        return;
    process.descriptors.push_back(
        {.number = std::string(number), .node = std::string(node), .usage = std::nullopt, .isAsked = false});
    ++clientCount;
}

/// Goes through up to `allowance` links and answers how many it took.
int DRMClients::lookAt(Process& process, double now, int allowance) {
    int taken = 0;
    if (!process.underWay) {
        if (underWayCount >= openFolders)
            return 0; // those come to their end first
        taken = costOfOpening;
        if (!beginLook(process)) {
            process.pause = longestPauseS; // another user's, or hidden
            endLook(process, now);
            return taken;
        }
        ++underWayCount;
    }
    while (taken < allowance) {
        const dirent* entry = ::readdir(process.underWay.get());
        if (!entry) {
            endLook(process, now);
            --underWayCount;
            return taken;
        }
        note(process, entry->d_name);
        ++taken;
    }
    process.nextLook = now;
    return taken;
}

void DRMClients::look(double now) {
    std::vector<Process*> due;
    underWayCount = 0;
    for (auto& [pid, process] : processes) {
        underWayCount += process.underWay ? 1 : 0;
        if (process.nextLook <= now)
            due.push_back(&process);
    }
    std::ranges::stable_sort(due, {}, &Process::nextLook);
    for (int allowance = linksPerReading; allowance > 0 && !due.empty();) {
        for (Process* process : due)
            if (allowance > 0)
                allowance -= lookAt(*process, now, std::min(allowance, linksInTurn));
        std::erase_if(due, [](const Process* process) { return !process->underWay; });
    }
}

void DRMClients::refresh(Process& process, double now, const IsAwake& isAwake) {
    for (Descriptor& descriptor : process.descriptors) {
        descriptor.isAsked = isAwake(descriptor.node);
        if (!descriptor.isAsked)
            continue;
        const bool wasClient = descriptor.usage.has_value();
        const FileDescriptor file = root.open(process.folder + "/fdinfo/" + descriptor.number);
        const auto text = file.isOpen() ? file.readAll(buffer) : std::nullopt;
        descriptor.usage = text ? DRMUsage::parse(*text) : std::nullopt;
        if (wasClient && !descriptor.usage) // closed: another descriptor may still hold the client
            process.nextLook = now;
    }
    std::set<std::pair<std::string, std::uint64_t>> seen;
    std::erase_if(process.descriptors, [&seen](const Descriptor& descriptor) {
        if (!descriptor.usage)
            return descriptor.isAsked; // it leads to no client
        return !seen.emplace(descriptor.usage->device(), descriptor.usage->client).second;
    });
}

std::vector<DRMLedger::Held> DRMClients::read(double now, const IsAwake& isAwake) {
    followProcesses(now);
    clientCount = 0;
    for (const auto& [pid, process] : processes)
        clientCount += process.descriptors.size();
    look(now);
    std::vector<DRMLedger::Held> held;
    for (auto& [pid, process] : processes) {
        refresh(process, now, isAwake);
        for (const Descriptor& descriptor : process.descriptors)
            if (descriptor.usage)
                held.push_back({.pid = pid, .usage = &*descriptor.usage});
    }
    return held;
}

} // namespace ostrivane
