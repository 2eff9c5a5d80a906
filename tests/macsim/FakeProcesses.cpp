#include "tests/macsim/FakeParts.hpp"
#include "tests/macsim/FakeSystem.hpp"

#include <boost/json.hpp>
#include <libproc.h>
#include <pwd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

using macsim::Process;

constexpr std::size_t longestArguments = (1 << 20) + 4; ///< bytes; the kernel refuses a larger buffer
constexpr std::size_t countSize = 4;
constexpr int idsAddedToACount = 20;

macsim::ProcessTable table;

int fail(int code, int result) {
    errno = code;
    return result;
}

/// Whether the call is let through; what happens meanwhile has happened then.
bool begins(const char* call, std::int32_t pid) {
    table.calls.emplace_back(call);
    if (table.meanwhile)
        table.meanwhile(call, pid);
    return !macsim::refused(call);
}

const Process* find(std::int32_t pid) {
    const auto found = table.processes.find(pid);
    return found == table.processes.end() ? nullptr : &found->second;
}

bool mayRead(const Process& process) {
    return table.userID == 0 || process.uid == table.userID;
}

struct Flavour {
    int number;
    const char* name;
    bool isPublic;
};

constexpr Flavour flavours[] = {{PROC_PIDTBSDINFO, "PROC_PIDTBSDINFO", false},
                                {PROC_PIDTASKINFO, "PROC_PIDTASKINFO", false},
                                {PROC_PIDVNODEPATHINFO, "PROC_PIDVNODEPATHINFO", false},
                                {PROC_PIDT_SHORTBSDINFO, "PROC_PIDT_SHORTBSDINFO", true}};

std::vector<std::byte> shortRecord(std::int32_t pid) {
    auto record = macsim::recordNamed("proc_bsdshortinfo_root");
    std::memcpy(record.data(), &pid, sizeof(pid));
    return record;
}

std::vector<std::byte> argumentsNamed(std::string_view name) {
    const auto samples = macsim::fixture("procargs2.json");
    for (const auto& sample : samples.as_array())
        if (sample.at("name").as_string() == name)
            return macsim::bytesOfHex(sample.at("hex").as_string());
    return {};
}

} // namespace

namespace macsim {

ProcessTable& processTable() {
    return table;
}

/// The kernel, a system service of another user, a user's browser and server, and a child that nobody has waited for.
void resetProcesses() {
    table = ProcessTable{};
    table.userNames = {{0, "root"}, {88, "_windowserver"}, {501, "ana"}};

    Process kernel{.uid = 0};
    kernel.records[PROC_PIDT_SHORTBSDINFO] =
        bytesOfHex("00000000000000000000000002000000" // process 0, of none, running
                   "6b65726e656c5f7461736b0000000000" // "kernel_task"
                   "01000000000000000000000000000000" // of user 0
                   "00000000000000000000000000000000");
    table.processes[0] = kernel;

    Process service{.uid = 88, .path = "/System/Library/PrivateFrameworks/SkyLight.framework/Resources/WindowServer"};
    service.records[PROC_PIDT_SHORTBSDINFO] = shortRecord(341);
    service.records[PROC_PIDTASKINFO] = recordNamed("proc_taskinfo");
    service.records[PROC_PIDVNODEPATHINFO] = recordNamed("proc_vnodepathinfo");
    service.usage = recordNamed("rusage_info_v6");
    service.kernelInfo = recordNamed("kinfo_proc");
    service.arguments = argumentsNamed("no arguments");
    service.responsible = 341;
    table.processes[341] = service;

    Process server = service;
    server.uid = 501;
    server.path = "/opt/homebrew/bin/node";
    server.records[PROC_PIDT_SHORTBSDINFO] = shortRecord(4312);
    server.records[PROC_PIDTBSDINFO] = recordNamed("proc_bsdinfo_user");
    server.arguments = argumentsNamed("node with an empty argument");
    server.responsible = 812;
    table.processes[4312] = server;

    Process browser = server;
    browser.path = "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome Helper (Renderer)";
    browser.records[PROC_PIDT_SHORTBSDINFO] = shortRecord(812);
    browser.records[PROC_PIDTBSDINFO] = recordNamed("proc_bsdinfo_longname");
    table.processes[812] = browser;

    Process zombie = server;
    zombie.isZombie = true;
    zombie.records[PROC_PIDTBSDINFO] = recordNamed("proc_bsdinfo_zombie");
    table.processes[5001] = zombie;
}

int kernelProcessInfo(std::int32_t pid, void* old, std::size_t* oldLength) {
    if (!begins("KERN_PROC_PID", pid))
        return fail(EPERM, -1);
    const Process* process = find(pid);
    if (!process) {
        *oldLength = 0;
        return 0;
    }
    const auto& record = process->kernelInfo;
    if (*oldLength < record.size())
        return fail(ENOMEM, -1);
    *oldLength = record.size();
    std::ranges::copy(record, static_cast<std::byte*>(old));
    return 0;
}

int processArguments(std::int32_t pid, void* old, std::size_t* oldLength) {
    if (!begins("KERN_PROCARGS2", pid))
        return fail(EINVAL, -1);
    const Process* process = find(pid);
    if (!process || process->isZombie || pid == 0)
        return fail(EINVAL, -1);
    const auto& whole = process->arguments;
    if (!old) { // the size alone is told of anybody's
        *oldLength = whole.size();
        return 0;
    }
    if (!mayRead(*process) || *oldLength > longestArguments || *oldLength < countSize)
        return fail(EINVAL, -1);
    *oldLength = std::min(*oldLength, whole.size());
    auto* out = std::copy_n(whole.begin(), std::min(countSize, *oldLength), static_cast<std::byte*>(old));
    if (*oldLength > countSize) // in too small a buffer: the end of the region
        std::copy(whole.end() - static_cast<std::ptrdiff_t>(*oldLength - countSize), whole.end(), out);
    return 0;
}

} // namespace macsim

int proc_listallpids(void* buffer, int size) {
    const char* call = buffer ? "proc_listallpids" : "proc_listallpids count";
    if (!begins(call, -1))
        return fail(EPERM, 0);
    const auto present = static_cast<int>(table.processes.size());
    if (!buffer)
        return present + idsAddedToACount;
    const int fitting = std::min(present, size / static_cast<int>(sizeof(std::int32_t)));
    auto* out = static_cast<std::int32_t*>(buffer);
    auto newest = table.processes.rbegin();
    for (int i = 0; i < fitting; ++i)
        *out++ = (newest++)->first;
    return fitting;
}

int proc_pidinfo(int pid, int flavor, std::uint64_t arg, void* buffer, int size) {
    const auto* flavour = std::ranges::find(flavours, flavor, &Flavour::number);
    if (flavour == std::end(flavours) || arg != 0)
        return fail(EINVAL, 0);
    if (!begins(flavour->name, pid))
        return fail(EPERM, 0);
    const Process* process = find(pid);
    if (!process || process->isZombie)
        return fail(ESRCH, 0);
    if (!flavour->isPublic && !mayRead(*process))
        return fail(EPERM, 0);
    const auto record = process->records.find(flavor);
    if (record == process->records.end())
        return fail(ESRCH, 0);
    if (static_cast<std::size_t>(size) < record->second.size())
        return fail(ENOMEM, 0);
    std::ranges::copy(record->second, static_cast<std::byte*>(buffer));
    return static_cast<int>(record->second.size());
}

int proc_pidpath(int pid, void* buffer, std::uint32_t size) {
    if (!begins("proc_pidpath", pid))
        return fail(EPERM, 0);
    if (size > 4096)
        return fail(EOVERFLOW, 0);
    const Process* process = find(pid);
    if (!process || process->isZombie || process->path.empty())
        return fail(ESRCH, 0);
    if (size < 1024 || size <= process->path.size())
        return fail(ENOMEM, 0);
    std::memcpy(buffer, process->path.c_str(), process->path.size() + 1);
    return static_cast<int>(process->path.size());
}

int proc_pid_rusage(int pid, int flavor, rusage_info_t* buffer) {
    if (!begins("proc_pid_rusage", pid) || flavor != RUSAGE_INFO_V6)
        return fail(EINVAL, -1);
    const Process* process = find(pid);
    if (!process || process->usage.empty())
        return fail(ESRCH, -1);
    if (!mayRead(*process))
        return fail(EPERM, -1);
    std::ranges::copy(process->usage, static_cast<std::byte*>(static_cast<void*>(buffer)));
    return 0;
}

extern "C" pid_t responsibility_get_pid_responsible_for_pid(pid_t pid) {
    if (!begins("responsibility", pid))
        return fail(EPERM, -1);
    const Process* process = find(pid);
    return process ? process->responsible : fail(ESRCH, -1);
}

/// Stands before the C library's own, which would tell of the machine that the tests run on.
int getpwuid_r(uid_t uid, passwd* entry, char* text, std::size_t size, passwd** found) {
    *found = nullptr;
    if (!begins("getpwuid_r", -1))
        return EIO;
    const auto name = table.userNames.find(uid);
    if (name == table.userNames.end())
        return 0;
    const std::string texts = name->second + '\0' + "/Users/" + name->second;
    if (texts.size() >= size)
        return ERANGE;
    std::memcpy(text, texts.c_str(), texts.size() + 1);
    *entry = passwd{};
    entry->pw_uid = uid;
    entry->pw_name = text;
    entry->pw_dir = text + name->second.size() + 1;
    *found = entry;
    return 0;
}
