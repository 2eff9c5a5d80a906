#include "core/attribution/DesktopEntryIndex.hpp"

#include "core/attribution/DesktopEntry.hpp"
#include "core/attribution/KeyFile.hpp"
#include "core/attribution/PathText.hpp"
#include "core/model/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <tuple>

namespace ostrivane {

namespace {

constexpr std::string_view extension = ".desktop";

// No real folder of applications comes near these; a loop of links or a tree made to harm ends here.
constexpr int deepestFolder = 8;
constexpr std::size_t mostFiles = 20'000;

/// ASCII alone: identifiers hold nothing else.
std::string lowered(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return out;
}

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

} // namespace

std::vector<std::string> DesktopPlaces::defaultDataFolders(std::string_view home, std::string_view dataHome,
                                                           std::string_view dataFolders) {
    const std::string personal = dataHome.empty() ? std::string(home) + "/.local/share" : std::string(dataHome);
    std::vector<std::string> folders;
    const auto add = [&](std::string_view folder) {
        while (folder.size() > 1 && folder.ends_with('/'))
            folder.remove_suffix(1);
        if (folder.starts_with('/') && !contains(folders, folder)) // a relative one is to be passed over
            folders.emplace_back(folder);
    };
    add(personal);
    std::string_view rest = dataFolders.empty() ? std::string_view("/usr/local/share:/usr/share") : dataFolders;
    for (std::size_t end = 0; end != std::string_view::npos; rest.remove_prefix(std::min(rest.size(), end + 1))) {
        end = rest.find(':');
        add(rest.substr(0, end));
        if (end == std::string_view::npos)
            break;
    }
    add(personal + "/flatpak/exports/share");
    add("/var/lib/flatpak/exports/share");
    add("/var/lib/snapd/desktop");
    return folders;
}

/// Reads the folders of applications into an index.
class DesktopEntryIndexBuilder {
public:
    DesktopEntryIndexBuilder(const DesktopPlaces& where, const DesktopFiles& asked, const DesktopTables& known)
        : places(where), files(asked), tables(known), localeNames(DesktopEntry::localeNames(where.locales)) {}

    DesktopEntryIndex build() {
        for (const std::string& folder : places.dataFolders)
            addFolder(folder + "/applications", "", 0);
        return std::move(index);
    }

private:
    using Positions = DesktopEntryIndex::Positions;

    /// How good an entry's right to a program or a folder is; the smaller the better.
    struct Claim {
        bool isHiddenHere = false;
        bool isNamedOtherwise = false;
        std::size_t arguments = 0;
        std::size_t pathLength = 0;
        std::string path; // so that the winner does not depend on the order of reading

        friend bool operator<(const Claim& a, const Claim& b) {
            return std::tie(a.isHiddenHere, a.isNamedOtherwise, a.arguments, a.pathLength, a.path) <
                   std::tie(b.isHiddenHere, b.isNamedOtherwise, b.arguments, b.pathLength, b.path);
        }
    };
    using Claims = std::map<std::string, Claim, std::less<>>;

    void addFolder(const std::string& folder, const std::string& prefix, int depth) {
        if (depth > deepestFolder)
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
        if (++filesMet > mostFiles || seen.contains(id) || Text::repaired(path) != path)
            return;
        const auto text = files.read(path);
        const auto entry = text ? DesktopEntry::parse(*text, localeNames) : std::nullopt;
        if (!entry) // a file that says nothing does not stand for the one of a later folder
            return;
        seen.insert(id);
        if (entry->hidden || !entry->isApplication)
            return;
        const std::size_t position = index.all.size();
        index.all.push_back({path, id, entry->name, entry->icon, entry->noDisplay});
        index.byPath.emplace(path, position);
        index.byID.emplace(id, position);
        index.byLowerID.emplace(lowered(id), position);
        if (!entry->noDisplay && !entry->terminal)
            addPrograms(*entry, position);
    }

    void addPrograms(const DesktopEntry& entry, std::size_t position) {
        const std::string id = index.all[position].id;
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

    std::optional<std::string> located(const std::string& program) const {
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
        const auto& bundle = index.all[position];
        const std::string_view stem = std::string_view(bundle.id).substr(0, bundle.id.size() - extension.size());
        const Claim claim{.isHiddenHere = !isShown(entry, places.desktops),
                          .isNamedOtherwise = stem != name && stem != realName,
                          .arguments = arguments,
                          .pathLength = bundle.path.size(),
                          .path = bundle.path};
        settle(exeClaims, index.byExe, *path, claim, position);
        const std::string folder(packageFolder(PathText::parent(*path)));
        if (isPrivate(folder, places, tables))
            settle(folderClaims, index.byFolder, folder, claim, position);
        else
            addWrapped(realName, claim, position);
    }

    /// A script in a shared folder that starts the program of its name: "/usr/bin/chromium" in "/usr/lib/chromium".
    void addWrapped(std::string_view name, const Claim& claim, std::size_t position) {
        for (const std::string_view parent : tables.wrappedIn) {
            const std::string folder = fmt::format("{}/{}", parent, name);
            if (isPrivate(folder, places, tables) && files.isFolder(folder))
                settle(folderClaims, index.byFolder, folder, claim, position);
        }
    }

    static void settle(Claims& claims, Positions& positions, const std::string& key, const Claim& claim,
                       std::size_t position) {
        const auto [held, isFirst] = claims.emplace(key, claim);
        if (!isFirst && !(claim < held->second))
            return;
        held->second = claim;
        positions[key] = position;
    }

    const DesktopPlaces& places;
    const DesktopFiles& files;
    const DesktopTables& tables;
    std::vector<std::string> localeNames;
    std::size_t filesMet = 0;
    std::set<std::string> seen; // identifiers: the first file of one wins
    Claims exeClaims;
    Claims folderClaims;
    DesktopEntryIndex index;
};

DesktopEntryIndex DesktopEntryIndex::build(const DesktopPlaces& places, const DesktopFiles& files,
                                           const DesktopTables& tables) {
    return DesktopEntryIndexBuilder(places, files, tables).build();
}

const DesktopEntryIndex::Bundle* DesktopEntryIndex::find(const Positions& positions, std::string_view key) const {
    const auto found = positions.find(key);
    return found == positions.end() ? nullptr : &all[found->second];
}

const DesktopEntryIndex::Bundle* DesktopEntryIndex::bundleForProgram(std::string_view path) const {
    return find(byExe, path);
}

const DesktopEntryIndex::Bundle* DesktopEntryIndex::bundleForPath(std::string_view path) const {
    if (const Bundle* exact = bundleForProgram(path))
        return exact;
    for (auto folder = PathText::parent(path); folder.size() > 1; folder = PathText::parent(folder))
        if (const Bundle* bundle = find(byFolder, folder))
            return bundle;
    return nullptr;
}

const DesktopEntryIndex::Bundle* DesktopEntryIndex::bundleForID(std::string_view id) const {
    const std::string fileID = std::string(id) + std::string(extension);
    if (const Bundle* exact = find(byID, fileID))
        return exact;
    return find(byLowerID, lowered(fileID));
}

const DesktopEntryIndex::Bundle* DesktopEntryIndex::bundleAt(std::string_view path) const {
    return find(byPath, path);
}

BundleFacts DesktopEntryIndex::facts(std::string_view path) const {
    const Bundle* bundle = bundleAt(path);
    if (!bundle)
        return {};
    BundleFacts facts{.names = {}, .bundleID = bundle->id, .fileName = {}};
    if (!bundle->name.empty())
        facts.names.push_back(bundle->name);
    // "Maps" is no short form of "org.gnome.Maps": the domain in front of such a name is nothing to show a person.
    const std::string_view stem = PathText::withoutExtension(PathText::lastComponent(path));
    const std::string_view domain = PathText::withoutExtension(stem);
    if (domain != stem && domain.find('.') != std::string_view::npos)
        facts.fileName = stem.substr(domain.size() + 1);
    return facts;
}

} // namespace ostrivane
