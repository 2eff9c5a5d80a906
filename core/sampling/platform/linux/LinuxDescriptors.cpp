#include "core/sampling/platform/linux/LinuxDescriptors.hpp"

#include "core/model/Text.hpp"
#include "core/sampling/platform/ProcPIDStat.hpp"
#include "core/sampling/platform/SocketLink.hpp"

#include <array>
#include <charconv>

#include <dirent.h>
#include <unistd.h>

namespace ostrivane {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

/// The links of /proc/PID/fd. The folder stays open while they are walked, so a walk can rest where it is.
class DescriptorLinks final : public Descriptors {
public:
    explicit DescriptorLinks(OpenFolder opened) : folder(std::move(opened)) {}

    std::optional<int> next() override {
        while (const dirent* entry = ::readdir(folder.get()))
            if (const auto number = Text::number<int>(entry->d_name))
                return number;
        return std::nullopt;
    }

    std::optional<SocketInode> socketAt(int descriptor) override {
        std::array<char, 16> name{};
        std::to_chars(name.data(), name.data() + name.size() - 1, descriptor);
        std::array<char, 64> target; // longer ones are files
        const ssize_t size = ::readlinkat(::dirfd(folder.get()), name.data(), target.data(), target.size());
        if (size <= 0)
            return std::nullopt;
        return SocketLink::parse(std::string_view(target.data(), static_cast<std::size_t>(size)));
    }

private:
    OpenFolder folder;
};

std::string processFile(std::int32_t pid, const char* name) {
    return "proc/" + std::to_string(pid) + "/" + name;
}

} // namespace

std::vector<std::int32_t> LinuxDescriptors::pids() {
    std::vector<std::int32_t> found;
    proc.each([&](const char* name) {
        if (const auto pid = Text::number<std::int32_t>(name))
            found.push_back(*pid);
    });
    return found;
}

std::optional<std::uint64_t> LinuxDescriptors::startOf(std::int32_t pid) {
    const FileDescriptor file = root.open(processFile(pid, "stat"));
    const auto text = file.isOpen() ? file.readAll(buffer) : std::nullopt;
    const auto stat = text ? ProcPIDStat::parse(*text) : std::nullopt;
    return stat ? std::optional(stat->start) : std::nullopt;
}

std::unique_ptr<Descriptors> LinuxDescriptors::open(std::int32_t pid) {
    FileDescriptor descriptor = root.open(processFile(pid, "fd"));
    if (!descriptor.isOpen())
        return nullptr;
    OpenFolder folder(::fdopendir(descriptor.get()));
    if (!folder)
        return nullptr;
    descriptor.release(); // the folder closes it
    return std::make_unique<DescriptorLinks>(std::move(folder));
}

} // namespace ostrivane
