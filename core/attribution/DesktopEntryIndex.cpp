#include "core/attribution/DesktopEntryIndex.hpp"

#include "core/attribution/PathText.hpp"

#include <utility>

namespace ostrivane {

namespace {

/// ASCII alone: identifiers hold nothing else.
std::string lowered(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return out;
}

template <class Map, class Key>
const InstalledApplication* find(const Map& places, const Key& key) {
    const auto found = places.find(key);
    return found == places.end() ? nullptr : found->second;
}

} // namespace

DesktopEntryIndex::DesktopEntryIndex(std::shared_ptr<const InstalledApplications> applications)
    : all(std::move(applications)) {
    if (!all)
        return;
    for (const InstalledApplication& application : *all) {
        byPath.emplace(application.path, &application);
        byID.emplace(application.id, &application);
        byLowerID.emplace(lowered(application.id), &application);
        for (const std::string& program : application.programs)
            byProgram.emplace(program, &application);
        for (const std::string& folder : application.folders)
            byFolder.emplace(folder, &application);
    }
}

const InstalledApplication* DesktopEntryIndex::bundleForProgram(std::string_view path) const {
    return find(byProgram, path);
}

const InstalledApplication* DesktopEntryIndex::bundleForPath(std::string_view path) const {
    if (const auto* exact = bundleForProgram(path))
        return exact;
    for (auto folder = PathText::parent(path); folder.size() > 1; folder = PathText::parent(folder))
        if (const auto* bundle = find(byFolder, folder))
            return bundle;
    return nullptr;
}

const InstalledApplication* DesktopEntryIndex::bundleForID(std::string_view id) const {
    const std::string fileID = std::string(id) + ".desktop";
    if (const auto* exact = find(byID, fileID))
        return exact;
    return find(byLowerID, lowered(fileID));
}

const InstalledApplication* DesktopEntryIndex::bundleAt(std::string_view path) const {
    return find(byPath, path);
}

BundleFacts DesktopEntryIndex::facts(std::string_view path) const {
    const InstalledApplication* bundle = bundleAt(path);
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
