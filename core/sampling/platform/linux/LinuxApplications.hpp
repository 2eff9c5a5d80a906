#pragma once

#include "core/attribution/InstalledApplicationsReader.hpp"
#include "core/sampling/platform/Applications.hpp"

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <optional>

namespace ostrivane {

/// The applications of a session. A thread of its own reads them, and looks from time to time whether their folders
/// changed. Those may lie on a network, where that can take as long as it likes: no call asks a file system, and only
/// the first one waits, for a moment. Until they are known there are none.
class LinuxApplications final : public Applications {
public:
    using FolderTime = std::filesystem::file_time_type;

    /// What is asked; from the thread of its own too.
    struct Asked {
        DesktopFiles files;
        /// When a folder last changed; absent when there is none.
        std::function<std::optional<FolderTime>(const std::string& folder)> changed;
        std::function<std::chrono::steady_clock::time_point()> now; ///< by the caller's thread alone

        static Asked ofThisComputer();
    };

    static constexpr std::chrono::seconds betweenLooks{30};
    static constexpr std::chrono::seconds longestFirstWait{2};

    /// Those of the session that the program runs in.
    LinuxApplications();
    LinuxApplications(DesktopPlaces where, Asked what);

    std::shared_ptr<const InstalledApplications> installed() override;
    BundleFacts bundleFacts(const std::string& path) override;

private:
    /// A list and the folders that it came from, as they were just before.
    struct Reading {
        std::shared_ptr<const InstalledApplications> applications;
        std::map<std::string, std::optional<FolderTime>> folders;
    };

    Reading read() const;
    std::optional<Reading> readAgain() const;
    void takeIn();
    void beginLook();

    const DesktopPlaces places;
    const Asked asked;
    Reading current; ///< not changed while a look is under way, which reads it
    std::chrono::steady_clock::time_point lastLook;
    std::future<std::optional<Reading>> look; ///< last: it is waited for before what it uses goes
};

} // namespace ostrivane
