#pragma once

#include "core/attribution/DesktopEntryIndex.hpp"
#include "core/attribution/InstalledApplicationsReader.hpp"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// Files of a machine that exists in the test alone.
class DesktopTree {
public:
    DesktopTree() {
        places.dataFolders = {"/home/ada/.local/share", "/usr/share"};
        places.programFolders = {"/usr/local/bin", "/usr/bin"};
        places.home = "/home/ada";
        places.userFolders = {"/home/ada/Downloads"};
        places.desktops = {"GNOME"};
    }

    DesktopTree& program(const std::string& path) { return link(path, path); }
    DesktopTree& link(const std::string& path, const std::string& target) {
        programs[path] = target;
        return *this;
    }
    DesktopTree& folder(const std::string& path) {
        folders.insert(path);
        return *this;
    }
    DesktopTree& file(const std::string& path, std::string_view text) {
        texts[path] = text;
        return *this;
    }
    /// An application's entry in the folder for all users.
    DesktopTree& entry(const std::string& id, std::string_view lines) {
        return file("/usr/share/applications/" + id, "[Desktop Entry]\nType=Application\n" + std::string(lines));
    }

    InstalledApplications applications() const { return readInstalledApplications(places, files()); }
    DesktopEntryIndex index() const {
        return DesktopEntryIndex(std::make_shared<const InstalledApplications>(applications()));
    }

    DesktopFiles files() const {
        DesktopFiles files;
        files.read = [this](const std::string& path) { return found(texts, path); };
        files.list = [this](const std::string& path) { return namesIn(path); };
        files.isFolder = [this](const std::string& path) { return folders.contains(path) || !namesIn(path).empty(); };
        files.realProgram = [this](const std::string& path) { return found(programs, path); };
        return files;
    }

    DesktopPlaces places;

private:
    using Texts = std::map<std::string, std::string>;

    static std::optional<std::string> found(const Texts& texts, const std::string& path) {
        const auto place = texts.find(path);
        return place == texts.end() ? std::nullopt : std::optional(place->second);
    }

    std::vector<std::string> namesIn(const std::string& folder) const {
        std::set<std::string> names;
        for (const auto& [path, text] : texts)
            if (path.starts_with(folder + "/"))
                names.insert(path.substr(folder.size() + 1, path.find('/', folder.size() + 1) - folder.size() - 1));
        return {names.begin(), names.end()};
    }

    Texts texts;
    Texts programs;
    std::set<std::string> folders;
};

} // namespace ostrivane
