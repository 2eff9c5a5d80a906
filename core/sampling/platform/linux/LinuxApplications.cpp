#include "core/sampling/platform/linux/LinuxApplications.hpp"

#include "core/attribution/ProjectFiles.hpp"

#include <algorithm>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace ostrivane {

namespace fs = std::filesystem;

namespace {

std::string variable(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value ? value : "";
}

std::optional<std::string> realProgram(const std::string& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error) || ::access(path.c_str(), X_OK) != 0)
        return std::nullopt;
    auto real = fs::canonical(path, error);
    return error ? std::nullopt : std::optional(real.string());
}

std::optional<LinuxApplications::FolderTime> changeOf(const std::string& folder) {
    std::error_code error;
    const auto time = fs::last_write_time(folder, error);
    return error ? std::nullopt : std::optional(time);
}

} // namespace

LinuxApplications::Asked LinuxApplications::Asked::ofThisComputer() {
    return {.files = {.read = DiskFiles::read,
                      .list = DiskFiles::list,
                      .isFolder =
                          [](const std::string& path) {
                              std::error_code error;
                              return fs::is_directory(path, error);
                          },
                      .realProgram = realProgram},
            .changed = changeOf,
            .now = std::chrono::steady_clock::now};
}

LinuxApplications::LinuxApplications()
    : LinuxApplications(DesktopPlaces::ofSession(variable, DiskFiles::read), Asked::ofThisComputer()) {}

LinuxApplications::LinuxApplications(DesktopPlaces where, Asked what)
    : places(std::move(where)), asked(std::move(what)) {}

std::shared_ptr<const InstalledApplications> LinuxApplications::installed() {
    if (!current.applications) { // the first time: most of what follows is about them, so a moment is well spent
        current.applications = std::make_shared<const InstalledApplications>();
        beginLook();
        if (look.valid() && look.wait_for(longestFirstWait) == std::future_status::ready)
            takeIn();
    } else if (look.valid()) {
        takeIn();
    } else if (asked.now() - lastLook >= betweenLooks) {
        beginLook();
    }
    return current.applications;
}

BundleFacts LinuxApplications::bundleFacts(const std::string& /*path*/) {
    return {};
}

LinuxApplications::Reading LinuxApplications::read() const {
    Reading reading;
    // Ahead of the reading: what changes meanwhile shows at the next look.
    const auto note = [&](const std::string& folder) { reading.folders.emplace(folder, asked.changed(folder)); };
    for (const std::string& folder : places.dataFolders)
        note(folder + "/dbus-1/services"); // asked for single files, and never listed
    DesktopFiles files = asked.files;
    files.list = [&](const std::string& folder) {
        note(folder);
        return asked.files.list(folder);
    };
    reading.applications = std::make_shared<const InstalledApplications>(readInstalledApplications(places, files));
    return reading;
}

/// Absent when no folder changed.
std::optional<LinuxApplications::Reading> LinuxApplications::readAgain() const {
    const bool isFirst = current.folders.empty();
    const auto isAsBefore = [&](const auto& folder) { return asked.changed(folder.first) == folder.second; };
    if (!isFirst && std::all_of(current.folders.begin(), current.folders.end(), isAsBefore))
        return std::nullopt;
    Reading reading = read();
    if (*reading.applications == *current.applications)
        reading.applications = current.applications;
    return reading;
}

void LinuxApplications::takeIn() {
    if (look.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return;
    if (auto reading = look.get())
        current = *std::move(reading);
}

void LinuxApplications::beginLook() {
    lastLook = asked.now();
    try {
        look = std::async(std::launch::async, [this] { return readAgain(); });
    } catch (const std::system_error&) {
        // No thread to be had: the next look is as good.
    }
}

} // namespace ostrivane
