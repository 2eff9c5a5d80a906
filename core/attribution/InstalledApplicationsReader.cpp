#include "core/attribution/InstalledApplicationsReader.hpp"

#include "core/attribution/DesktopEntry.hpp"
#include "core/attribution/KeyFile.hpp"
#include "core/attribution/PathText.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <tuple>

namespace ostrivane {

namespace {

constexpr std::string_view extension = ".desktop";

// No real folder of applications comes near these; a loop of links or a tree made to harm ends here.
constexpr int deepestFolder = 8;
constexpr std::size_t mostMet = 20'000; // entries and folders

bool contains(const std::vector<std::string>& list, std::string_view item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

bool isShown(const DesktopEntry& entry, const std::vector<std::string>& desktops) {
    const auto names = [&](const std::vector<std::string>& list) {
        return std::any_of(desktops.begin(), desktops.end(), [&](const auto& name) { return contains(list, name); });
    };
    return entry.onlyShowIn.empty() ? !names(entry.notShowIn) : names(entry.onlyShowIn);
}

/// The folder in which the files of one program lie, by the folder of the program itself.
std::string_view packageFolder(std::string_view folder) {
    return PathText::lastComponent(folder) == "bin" ? PathText::parent(folder) : folder;
}

/// `folder` holds the files of one package alone.
bool isPrivate(std::string_view folder, const DesktopPlaces& places, const DesktopTables& tables) {
    for (const std::string_view parent : tables.privateParents) {
        if (!PathText::isBelow(folder, parent))
            continue;
        std::string_view below = folder.substr(parent.size() + 1);
        const std::string_view first = below.substr(0, below.find('/'));
        constexpr std::string_view ofArchitecture = "*-linux-*"; // "x86_64-linux-gnu"
        if (!matchesAny(std::span(&ofArchitecture, 1), first))
            return !matchesAny(tables.sharedFolders, first);
        below.remove_prefix(std::min(first.size() + 1, below.size())); // one level more before a package's own
        return !below.empty() && !matchesAny(tables.sharedFolders, below.substr(0, below.find('/')));
    }
    if (places.home.empty() || !PathText::isBelow(folder, places.home))
        return false;
    return !matchesAny(tables.sharedHomeFolders, folder.substr(places.home.size() + 1)) &&
           !contains(places.userFolders, folder);
}

/// Goes through the folders of applications once.
class Reader {
public:
    Reader(const DesktopPlaces& where, const DesktopFiles& asked, const DesktopTables& known)
        : places(where), files(asked), tables(known), localeNames(DesktopEntry::localeNames(where.locales)) {}

    InstalledApplications read() {
        for (const std::string& folder : places.dataFolders)
            addFolder(folder + "/applications", "", 0);
        for (const auto& [program, claim] : programClaims)
            applications[claim.position].programs.push_back(program);
        for (const auto& [folder, claim] : folderClaims)
            applications[claim.position].folders.push_back(folder);
        return std::move(applications);
    }

private:
    /// How good an entry's right to a program or a folder is; the smaller the better.
    struct Claim {
        bool isHiddenHere = false;
        bool isNamedOtherwise = false;
        std::size_t arguments = 0;
        std::size_t pathLength = 0;
        std::string path;         // so that the winner does not depend on the order of reading
        std::size_t position = 0; // of the application

        friend bool operator<(const Claim& a, const Claim& b) {
            return std::tie(a.isHiddenHere, a.isNamedOtherwise, a.arguments, a.pathLength, a.path) <
                   std::tie(b.isHiddenHere, b.isNamedOtherwise, b.arguments, b.pathLength, b.path);
        }
    };
    using Claims = std::map<std::string, Claim, std::less<>>;

    void addFolder(const std::string& folder, const std::string& prefix, int depth) {
        if (depth > deepestFolder || ++met > mostMet)
            return;
        auto names = files.list(folder);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) {
            const std::string path = fmt::format("{}/{}", folder, name);
            if (name.size() > extension.size() && name.ends_with(extension))
                addFile(path, prefix + name);
            else if (files.isFolder(path))
                addFolder(path, fmt::format("{}{}-", prefix, name), depth + 1);
        }
    }

    void addFile(const std::string& path, const std::string& id) {
        if (++met > mostMet || seen.contains(id) || Text::repaired(path) != path)
            return;
        const auto text = files.read(path);
        const auto entry = text ? DesktopEntry::parse(*text, localeNames) : std::nullopt;
        if (!entry) // a file that says nothing does not stand for the one of a later folder
            return;
        seen.insert(id);
        if (entry->hidden || !entry->isApplication)
            return;
        applications.push_back({.path = path,
                                .id = id,
                                .name = entry->name,
                                .icon = entry->icon,
                                .noDisplay = entry->noDisplay,
                                .programs = {},
                                .folders = {}});
        if (!entry->noDisplay && !entry->terminal)
            addPrograms(*entry, applications.size() - 1);
    }

    void addPrograms(const DesktopEntry& entry, std::size_t position) {
        const std::string& id = applications[position].id;
        const auto command = DesktopCommand::parse(entry.exec);
        const std::size_t arguments = command ? command->arguments : 0;
        if (command)
            addProgram(entry, command->program, arguments, position);
        if (const auto tried = DesktopCommand::parse(entry.tryExec))
            addProgram(entry, tried->program, arguments, position);
        if (const auto served = busProgram(id))
            addProgram(entry, *served, arguments, position);
    }

    /// The program that the message bus starts for the application: often not the one of Exec.
    std::optional<std::string> busProgram(const std::string& id) const {
        const std::string name = id.substr(0, id.size() - extension.size());
        for (const std::string& folder : places.dataFolders) {
            const auto text = files.read(fmt::format("{}/dbus-1/services/{}.service", folder, name));
            const auto group = text ? KeyFile::group(*text, "D-BUS Service") : std::nullopt;
            if (!group)
                continue;
            const auto command = DesktopCommand::parse(KeyFile::text(KeyFile::value(*group, "Exec")));
            return command ? std::optional(command->program) : std::nullopt;
        }
        return std::nullopt;
    }

    /// As valid UTF-8, like the paths that processes show.
    std::optional<std::string> located(const std::string& program) const {
        auto path = realPath(program);
        return path ? std::optional(Text::repaired(*path)) : std::nullopt;
    }

    std::optional<std::string> realPath(const std::string& program) const {
        if (program.starts_with('/'))
            return files.realProgram(program);
        if (program.find('/') != std::string::npos)
            return std::nullopt;
        for (const std::string& folder : places.programFolders)
            if (auto found = files.realProgram(fmt::format("{}/{}", folder, program)))
                return found;
        return std::nullopt;
    }

    void addProgram(const DesktopEntry& entry, const std::string& program, std::size_t arguments,
                    std::size_t position) {
        const std::string_view name = PathText::lastComponent(program);
        if (matchesAny(tables.launchers, name))
            return;
        const auto path = located(program);
        const std::string_view realName = path ? PathText::lastComponent(*path) : std::string_view();
        if (!path || matchesAny(tables.launchers, realName)) // "/snap/bin/firefox" is a link to snap
            return;
        const InstalledApplication& owner = applications[position];
        const std::string_view stem = std::string_view(owner.id).substr(0, owner.id.size() - extension.size());
        const Claim claim{.isHiddenHere = !isShown(entry, places.desktops),
                          .isNamedOtherwise = stem != name && stem != realName,
                          .arguments = arguments,
                          .pathLength = owner.path.size(),
                          .path = owner.path,
                          .position = position};
        settle(programClaims, *path, claim);
        const std::string folder(packageFolder(PathText::parent(*path)));
        if (path->ends_with(".AppImage"))
            return; // whole in one file: what lies beside it is another's
        if (isPrivate(folder, places, tables))
            settle(folderClaims, folder, claim);
        else
            addWrapped(realName, claim);
    }

    /// A script in a shared folder that starts the program of its name: "/usr/bin/chromium" in "/usr/lib/chromium".
    void addWrapped(std::string_view name, const Claim& claim) {
        for (const std::string_view parent : tables.wrappedIn) {
            const std::string folder = fmt::format("{}/{}", parent, name);
            if (isPrivate(folder, places, tables) && files.isFolder(folder))
                settle(folderClaims, folder, claim);
        }
    }

    static void settle(Claims& claims, const std::string& key, const Claim& claim) {
        const auto [held, isFirst] = claims.emplace(key, claim);
        if (!isFirst && claim < held->second)
            held->second = claim;
    }

    const DesktopPlaces& places;
    const DesktopFiles& files;
    const DesktopTables& tables;
    std::vector<std::string> localeNames;
    std::size_t met = 0;
    std::set<std::string> seen; // identifiers: the first file of one wins
    Claims programClaims;
    Claims folderClaims;
    InstalledApplications applications;
};

} // namespace

InstalledApplications readInstalledApplications(const DesktopPlaces& places, const DesktopFiles& files,
                                                const DesktopTables& tables) {
    return Reader(places, files, tables).read();
}

} // namespace ostrivane
