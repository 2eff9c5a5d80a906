#include "core/sampling/platform/linux/LinuxProcesses.hpp"

#include "core/model/Saturating.hpp"
#include "core/model/Text.hpp"
#include "core/sampling/platform/MountInfo.hpp"
#include "core/sampling/platform/ProcPIDFiles.hpp"
#include "core/sampling/platform/Scanner.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <functional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrivane {

namespace {

constexpr std::size_t longestFile = 64 << 10;       ///< bytes; of cmdline too, which programs can make longer
constexpr std::size_t longestEnvironment = 1 << 20; ///< bytes
constexpr std::uint64_t nanosPerSecond = 1'000'000'000;

/// "PID/NAME" without an allocation.
class PIDPath {
public:
    PIDPath(std::int32_t pid, std::string_view name) {
        char* end = std::to_chars(text.data(), text.data() + 12, pid).ptr;
        *end++ = '/';
        const std::size_t size = std::min(name.size(), text.size() - 14);
        std::memcpy(end, name.data(), size);
        end[size] = '\0';
    }
    const char* c_str() const { return text.data(); }

private:
    std::array<char, 48> text;
};

bool isShortOfDescriptors() {
    return errno == EMFILE || errno == ENFILE;
}

std::int32_t pidOf(const char* name) {
    const std::string_view digits = name;
    return digits.empty() || digits.front() < '0' || digits.front() > '9'
               ? -1
               : Text::number<std::int32_t>(digits).value_or(-1);
}

} // namespace

LinuxProcesses::LinuxProcesses(const RootFolder& folder, const Units& unitsOfMachine, std::size_t mostDescriptors)
    : root(folder), units(unitsOfMachine), descriptorLimit(mostDescriptors), proc(folder.openFolder("proc").release()),
      mounts(folder), swaps(folder, "proc/swaps", KeptFile::Presence::optional), buffer(longestFile) {}

const std::vector<ProcessReading>& LinuxProcesses::all() {
    if (!std::exchange(isFresh, false))
        refresh(Round::withoutIdleKernel);
    return readings;
}

std::optional<PidMap<SystemProcessTotals>> LinuxProcesses::totals() {
    refresh(Round::everything);
    isFresh = true;
    if (known.empty()) // not even this program: nothing is told
        return std::nullopt;
    PidMap<SystemProcessTotals> found;
    found.reserve(known.size());
    for (const Kept& kept : known)
        found.emplace(kept.pid, kept.totals);
    return found;
}

void LinuxProcesses::refresh(Round round) {
    now = std::chrono::steady_clock::now();
    swapInUse = swapIsUsed();
    listIDs();
    if (!std::ranges::equal(ids, known, {}, {}, &Kept::pid))
        takeInArrivals();
    std::size_t living = 0;
    for (std::size_t index = 0; index < known.size(); ++index) {
        if (!read(known[index], readings[index], round)) {
            forget(known[index]);
            continue;
        }
        if (living != index) {
            known[living] = std::move(known[index]);
            readings[living] = std::move(readings[index]);
        }
        ++living;
    }
    // A list that is not whole would pass for one of fewer processes.
    living = std::exchange(lacksDescriptors, false) ? 0 : living;
    known.resize(living);
    readings.resize(living);
}

/// Makes room for the new, in the order of ids, and drops the gone.
void LinuxProcesses::takeInArrivals() {
    std::vector<Kept> nextKnown;
    std::vector<ProcessReading> nextReadings;
    nextKnown.reserve(ids.size());
    nextReadings.reserve(ids.size());
    std::size_t old = 0;
    for (const std::int32_t pid : ids) {
        for (; old < known.size() && known[old].pid < pid; ++old)
            forget(known[old]);
        if (old < known.size() && known[old].pid == pid) {
            nextKnown.push_back(std::move(known[old]));
            nextReadings.push_back(std::move(readings[old]));
            ++old;
        } else {
            nextKnown.emplace_back().pid = pid;
            nextReadings.emplace_back().info.pid = pid;
        }
    }
    for (; old < known.size(); ++old)
        forget(known[old]);
    known = std::move(nextKnown);
    readings = std::move(nextReadings);
}

void LinuxProcesses::listIDs() {
    ids.clear();
    proc.each([this](const char* name) {
        if (const std::int32_t pid = pidOf(name); pid > 0)
            ids.push_back(pid);
    });
    if (!std::ranges::is_sorted(ids)) // the kernel lists them so; another file system need not
        std::ranges::sort(ids);
}

bool LinuxProcesses::read(Kept& kept, ProcessReading& reading, Round round) {
    if (isRestingKernelThread(kept, reading, round))
        return true;
    auto text = readStat(kept);
    if (!text && kept.stat.isOpen()) { // gone, and its id is another process's by now
        forget(kept);
        kept = Kept{};
        kept.pid = reading.info.pid;
        text = readStat(kept);
    }
    if (!text)
        return false;
    const bool fullRound = now - kept.fullRead >= std::chrono::duration<double>(fullRoundSeconds);
    reading.diskIsFresh = false;
    const std::size_t hash = std::hash<std::string_view>()(*text);
    if (!fullRound && !kept.usesDisk && hash == kept.statHash)
        return true;
    const auto stat = ProcPIDStat::parse(*text);
    if (!stat)
        return kept.statHash.has_value(); // not whole this time: what was known stands
    const bool isNew = !kept.statHash || stat->start != kept.start;
    // Memory cannot come or go without a page fault or another resident size, and stat tells both.
    const bool textChanged = hash != kept.statHash;
    if (isNew) {
        reading = ProcessReading{};
        reading.info.pid = kept.pid;
        kept.rawName.clear();
    }
    kept.statHash = hash;
    const bool isOtherProgram = isNew || stat->name != kept.rawName;
    takeInfo(kept, reading.info, *stat);
    reading.threads = stat->threads;
    kept.ownerMayDiffer = kept.ownerMayDiffer || textChanged; // who did nothing is who they were
    // "sudo" becomes the program of another user, whose files are open to that one.
    if (isOtherProgram || (fullRound && kept.ownerMayDiffer)) {
        takeOwner(kept, reading.info);
        kept.ownerMayDiffer = false;
        kept.ioHidden = false;
    }
    if (isNew || fullRound) {
        // Spread, so that the full rounds of many processes do not fall on one tick.
        const auto spread = std::chrono::milliseconds(isNew ? kept.pid % 10 * 1000 : 0);
        kept.fullRead = now - spread;
    }
    takeUsage(kept, reading, textChanged);
    return true;
}

/// A kernel thread that may not be read in detail shows no figure but to `totals`.
bool LinuxProcesses::isRestingKernelThread(const Kept& kept, const ProcessReading& reading, Round round) const {
    return round == Round::withoutIdleKernel && reading.info.isKernelThread && !reading.usage && kept.statHash &&
           now - kept.fullRead < std::chrono::duration<double>(fullRoundSeconds);
}

std::optional<std::string_view> LinuxProcesses::readStat(Kept& kept) {
    if (!kept.stat.isOpen()) {
        const PIDPath path(kept.pid, "stat");
        FileDescriptor file(::openat(proc.descriptor(), path.c_str(), O_RDONLY | O_CLOEXEC));
        if (!file.isOpen() && isShortOfDescriptors() && openDescriptors > 0) {
            keepNothingOpen();
            file = FileDescriptor(::openat(proc.descriptor(), path.c_str(), O_RDONLY | O_CLOEXEC));
        }
        if (!file.isOpen()) {
            lacksDescriptors = lacksDescriptors || isShortOfDescriptors();
            return std::nullopt;
        }
        if (openDescriptors >= descriptorLimit) {
            const ssize_t size = ::read(file.get(), buffer.data(), buffer.size());
            return size > 0 ? std::optional(std::string_view(buffer.data(), static_cast<std::size_t>(size)))
                            : std::nullopt;
        }
        kept.stat = std::move(file);
        ++openDescriptors;
    }
    const ssize_t size = ::pread(kept.stat.get(), buffer.data(), buffer.size(), 0);
    return size > 0 ? std::optional(std::string_view(buffer.data(), static_cast<std::size_t>(size))) : std::nullopt;
}

/// Others need what was kept here.
void LinuxProcesses::keepNothingOpen() {
    for (Kept& each : known)
        forget(each);
    descriptorLimit = 0;
}

/// Of a file that the kernel hands over whole: a second read, only to find the end, would cost as much as the first.
std::optional<std::string_view> LinuxProcesses::readRecord(std::int32_t pid, const char* name) {
    const FileDescriptor file(
        ::openat(proc.descriptor(), PIDPath(pid, name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
    const ssize_t size = file.isOpen() ? ::read(file.get(), buffer.data(), buffer.size()) : -1;
    return size >= 0 ? std::optional(std::string_view(buffer.data(), static_cast<std::size_t>(size))) : std::nullopt;
}

std::optional<std::string_view> LinuxProcesses::readFile(std::int32_t pid, const char* name) {
    return readFile(pid, name, buffer);
}

std::optional<std::string_view> LinuxProcesses::readFile(std::int32_t pid, const char* name,
                                                         std::vector<char>& into) const {
    // The last two flags are for a file in another tree: neither a pipe nor a link may stand in its place.
    const FileDescriptor file(
        ::openat(proc.descriptor(), PIDPath(pid, name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
    if (!file.isOpen())
        return std::nullopt;
    std::size_t size = 0;
    while (size < into.size()) {
        const ssize_t more = ::read(file.get(), into.data() + size, into.size() - size);
        if (more < 0 && errno == EINTR)
            continue;
        if (more < 0)
            return std::nullopt;
        if (more == 0)
            break;
        size += static_cast<std::size_t>(more);
    }
    return std::string_view(into.data(), size);
}

/// The name of `stat` is in the buffer that further files are read into, so it is used up here.
void LinuxProcesses::takeInfo(Kept& kept, ProcessInfo& info, const ProcPIDStat& stat) {
    info.ppid = stat.ppid;
    info.status = stat.status();
    info.startTime = units.bootTime + static_cast<double>(stat.start) / static_cast<double>(units.ticksPerSecond);
    info.isKernelThread = stat.isKernelThread();
    info.hasTerminal = stat.ttyNr != 0;
    info.rawStart = stat.start;
    kept.start = stat.start;
    kept.totals = stat.totals(units.ticksPerSecond, units.pageSize);
    kept.time = saturatingSum(stat.userTime, stat.systemTime);
    if (info.name.empty() || kept.rawName != stat.name) {
        kept.rawName.assign(stat.name);
        const std::string_view cmdline = info.isKernelThread ? "" : readFile(kept.pid, "cmdline").value_or("");
        info.name = Text::repaired(ProcPIDFiles::uncutName(kept.rawName, cmdline));
    }
}

void LinuxProcesses::takeOwner(const Kept& kept, ProcessInfo& info) const {
    struct stat owner {};
    // The folder's owner is the effective user, right for processes too that hide their files.
    if (::fstatat(proc.descriptor(), PIDPath(kept.pid, "").c_str(), &owner, 0) == 0)
        info.uid = owner.st_uid;
}

void LinuxProcesses::takeUsage(Kept& kept, ProcessReading& reading, bool memoryChanged) {
    std::optional<ProcPIDFiles::Traffic> traffic;
    kept.usesDisk = false;
    if (!kept.ioHidden) {
        if (const auto io = readRecord(kept.pid, "io"))
            traffic = ProcPIDFiles::diskTraffic(*io);
        else
            kept.ioHidden = errno == EACCES || errno == EPERM || errno == ENOENT;
    }
    // An own process that hides its files (it has capabilities, or keeps secrets) still shows its load and memory.
    if (!traffic && reading.info.uid != units.userID) {
        reading.usage.reset();
        return;
    }
    ProcessUsage usage = reading.usage.value_or(ProcessUsage{});
    usage.cpuTicks = saturatingProduct(kept.time, nanosPerSecond / units.ticksPerSecond);
    reading.diskIsFresh = traffic.has_value();
    if (traffic) {
        kept.usesDisk = traffic->read != usage.diskRead || traffic->written != usage.diskWritten;
        usage.diskRead = traffic->read;
        usage.diskWritten = traffic->written;
    }
    if (memoryChanged || !reading.usage)
        usage.footprint = footprint(kept.pid, reading.info.isKernelThread).value_or(usage.footprint);
    reading.usage = usage;
}

std::optional<std::uint64_t> LinuxProcesses::footprint(std::int32_t pid, bool isKernelThread) {
    const auto statm = readRecord(pid, "statm");
    const auto pages = statm ? ProcPIDFiles::privatePages(*statm) : std::nullopt;
    if (!pages)
        return std::nullopt;
    const std::uint64_t resident = saturatingProduct(*pages, units.pageSize);
    const auto status = swapInUse && !isKernelThread ? readRecord(pid, "status") : std::nullopt;
    return saturatingSum(resident, status ? ProcPIDFiles::swapped(*status).value_or(0) : 0);
}

void LinuxProcesses::forget(Kept& kept) {
    if (kept.stat.isOpen()) {
        kept.stat.close();
        --openDescriptors;
    }
}

/// Some page of some process is swapped out; without it nobody's status need be read.
bool LinuxProcesses::swapIsUsed() {
    const auto text = swaps.read();
    if (!text)
        return false;
    Scanner lines(*text);
    for (lines.line(); !lines.atEnd();) { // the first names the columns
        Scanner words(lines.line());
        for (int column = 0; column < 3; ++column) // file, type, size
            words.word();
        if (words.number<std::uint64_t>().value_or(0) > 0)
            return true;
    }
    return false;
}

bool LinuxProcesses::isThere(const std::string& path) {
    return !(root.isRunningSystem() && mounts.mayHang(path)) && root.exists(path);
}

std::optional<std::string> LinuxProcesses::path(std::int32_t pid) {
    const auto link = root.link(fmt::format("proc/{}/exe", pid));
    if (!link || link->empty())
        return std::nullopt;
    const std::string_view cut = ProcPIDFiles::withoutDeletedMark(*link);
    // A file may really be called so.
    return Text::repaired(cut.size() < link->size() && isThere(*link) ? std::string_view(*link) : cut);
}

std::optional<std::vector<std::string>> LinuxProcesses::arguments(std::int32_t pid) {
    const auto cmdline = readFile(pid, "cmdline");
    if (!cmdline)
        return std::nullopt;
    return ProcPIDFiles::arguments(std::string(*cmdline), path(pid).value_or(""));
}

std::int32_t LinuxProcesses::responsiblePID(std::int32_t pid) {
    return pid; // who leads an application's unit shows only when all processes are known
}

std::string LinuxProcesses::userName(std::uint32_t uid) {
    return userNames.of(uid);
}

std::optional<std::string> LinuxProcesses::currentDirectory(std::int32_t pid) {
    const auto link = root.link(fmt::format("proc/{}/cwd", pid));
    if (!link || link->empty())
        return std::nullopt;
    // One that was removed has no path; what lies there by now is another one.
    const bool isGone = ProcPIDFiles::withoutDeletedMark(*link).size() < link->size() && !isThere(*link);
    return isGone ? std::nullopt : std::optional(Text::repaired(*link));
}

ProcessOrigin LinuxProcesses::origin(std::int32_t pid) {
    ProcessOrigin origin;
    if (const auto text = readFile(pid, "cgroup"))
        origin.controlGroups = Text::repaired(*text);
    const auto own = root.link("proc/self/ns/mnt"), its = root.link(fmt::format("proc/{}/ns/mnt", pid));
    origin.foreignRoot = own && its && *own != *its;
    if (origin.foreignRoot)
        origin.flatpakInfo = flatpakInfo(pid);
    origin.appImage = appImage(pid);
    return origin;
}

std::optional<std::string> LinuxProcesses::flatpakInfo(std::int32_t pid) {
    // A container's tree may be answered by a program of its own, which may have stopped answering.
    const auto mountinfo = root.read(fmt::format("proc/{}/mountinfo", pid));
    if (!mountinfo)
        return std::nullopt;
    const std::vector<MountInfo> itsMounts = MountInfo::parse(*mountinfo);
    if (const MountInfo* itsRoot = MountInfo::seenAt("/", itsMounts); itsRoot && itsRoot->mayHang())
        return std::nullopt;
    const auto text = readFile(pid, "root/.flatpak-info");
    return text ? std::optional(Text::repaired(*text)) : std::nullopt;
}

std::optional<std::string> LinuxProcesses::appImage(std::int32_t pid) {
    const auto program = [this](std::int32_t process) {
        return root.link(fmt::format("proc/{}/exe", process)).value_or(std::string());
    };
    if (!program(pid).starts_with("/tmp/.mount_"))
        return std::nullopt;
    std::vector<char> room(longestEnvironment);
    if (const auto environment = readFile(pid, "environ", room))
        if (const auto file = ProcPIDFiles::variable(*environment, "APPIMAGE"); file && !file->empty())
            return Text::repaired(*file);
    // The program may have hidden or cleared its environment. What mounted it is the file itself.
    const auto text = readFile(pid, "stat");
    const auto stat = text ? ProcPIDStat::parse(*text) : std::nullopt;
    const std::string parent = stat ? program(stat->ppid) : std::string();
    return parent.ends_with(".AppImage") ? std::optional(Text::repaired(parent)) : std::nullopt;
}

} // namespace ostrivane
