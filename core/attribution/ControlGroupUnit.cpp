#include "core/attribution/ControlGroupUnit.hpp"

#include "core/model/Text.hpp"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace ostrivane {

namespace {

using Unit = ControlGroupUnit;
using Kind = ControlGroupUnit::Kind;

Unit unitOf(Kind kind, std::string id = {}) {
    Unit unit;
    unit.kind = kind;
    unit.id = std::move(id);
    return unit;
}

/// `text` without `prefix` and `suffix`; absent when one of them is missing or nothing is left.
std::optional<std::string_view> between(std::string_view prefix, std::string_view text, std::string_view suffix) {
    if (text.size() <= prefix.size() + suffix.size() || !text.starts_with(prefix) || !text.ends_with(suffix))
        return std::nullopt;
    return text.substr(prefix.size(), text.size() - prefix.size() - suffix.size());
}

/// Undoes "\x2d". Codes of control characters stay as they are written: a name must not hold them.
std::string unescaped(std::string_view text) {
    std::string out;
    for (std::size_t next = 0; next < text.size(); ++next) {
        unsigned code = 0;
        const char* digits = text.data() + next + 2;
        const bool isCode = text.substr(next).size() >= 4 && text.substr(next, 2) == "\\x" &&
                            std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2;
        if (isCode && code >= ' ' && code != 0x7F) {
            out += static_cast<char>(code);
            next += 3;
        } else {
            out += text[next];
        }
    }
    return Text::repaired(out);
}

bool isHex(std::string_view text) {
    constexpr std::size_t shortID = 12; // what the engines themselves cut an ID to
    return text.size() >= shortID && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

std::optional<Unit> containerUnit(std::string_view name, std::string_view parent) {
    const auto hasID = [&](std::string_view prefix, std::string_view suffix) {
        const auto id = between(prefix, name, suffix);
        return id && isHex(*id);
    };
    if (hasID("docker-", ".scope") || (parent == "docker" && isHex(name)))
        return unitOf(Kind::docker);
    if (hasID("libpod-", ".scope") || hasID("libpod-", ""))
        return unitOf(Kind::podman);
    if (hasID("cri-containerd-", ".scope") || hasID("crio-", ".scope") || name.starts_with("kubepods") ||
        between("lxc.payload.", name, ""))
        return unitOf(Kind::container);
    return std::nullopt;
}

std::optional<Unit> flatpakUnit(std::string_view name) {
    const auto scope = between("app-flatpak-", name, ".scope");
    const auto service = between("app-flatpak-", name, ".service");
    const auto named = scope ? scope : service;
    const std::size_t end = named ? named->rfind(scope ? '-' : '@') : std::string_view::npos;
    if (end == std::string_view::npos || end == 0)
        return std::nullopt;
    return unitOf(Kind::flatpak, unescaped(named->substr(0, end)));
}

bool isUUID(std::string_view text) {
    constexpr std::string_view shape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    return std::equal(text.begin(), text.end(), shape.begin(), shape.end(), [](char c, char wanted) {
        return wanted == '-' ? c == '-' : std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos;
    });
}

std::optional<Unit> snapUnit(std::string_view name) {
    constexpr std::size_t uuidLength = 36;
    const auto scope = between("snap.", name, ".scope");
    auto named = scope ? scope : between("snap.", name, ".service");
    if (!named)
        return std::nullopt;
    if (scope) { // "APP-UUID", of older versions "APP.UUID"
        if (named->size() <= uuidLength + 1 || !isUUID(named->substr(named->size() - uuidLength)))
            return std::nullopt;
        named->remove_suffix(uuidLength + 1);
    }
    const std::size_t dot = named->find('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == named->size())
        return std::nullopt;
    Unit unit = unitOf(Kind::snap, unescaped(named->substr(0, dot)));
    unit.snapApp = unescaped(named->substr(dot + 1));
    return unit;
}

/// `named` is "[LAUNCHER-]ID". A launcher that does not escape the dashes of an ID gives more parts than two.
std::optional<Unit> launchedUnit(std::string_view named) {
    const std::size_t dash = named.find('-');
    const bool hasLauncher = dash != std::string_view::npos;
    Unit unit = unitOf(Kind::application, unescaped(hasLauncher ? named.substr(dash + 1) : named));
    if (hasLauncher)
        unit.launcher = unescaped(named.substr(0, dash));
    if (unit.id.empty())
        return std::nullopt;
    return unit;
}

std::optional<Unit> applicationUnit(std::string_view name) {
    if (const auto scope = between("app-", name, ".scope")) { // "…-RANDOM"
        const std::size_t dash = scope->rfind('-');
        return dash == std::string_view::npos ? std::nullopt : launchedUnit(scope->substr(0, dash));
    }
    if (const auto slice = between("app-", name, ".slice"))
        return launchedUnit(*slice);
    const auto service = between("app-", name, ".service"); // "…" or "…@RANDOM"
    if (!service)
        return std::nullopt;
    auto unit = launchedUnit(service->substr(0, service->rfind('@')));
    if (unit)
        unit->isAutostart = service->ends_with("@autostart");
    return unit;
}

/// "dbus-:1.2-NAME@0.service": the bus started NAME for the connection ":1.2".
std::optional<Unit> busUnit(std::string_view name) {
    const auto named = between("dbus-:", name, ".service");
    const std::size_t dash = named ? named->find('-') : std::string_view::npos;
    if (dash == std::string_view::npos)
        return std::nullopt;
    const std::string_view busName = named->substr(dash + 1);
    const std::size_t at = busName.rfind('@');
    if (at == std::string_view::npos || at == 0)
        return std::nullopt;
    return unitOf(Kind::application, unescaped(busName.substr(0, at)));
}

/// The unit that says which application the processes of the group `name` belong to.
std::optional<Unit> owningUnit(std::string_view name, std::string_view parent) {
    if (auto unit = containerUnit(name, parent))
        return unit;
    if (auto unit = flatpakUnit(name))
        return unit;
    if (auto unit = snapUnit(name))
        return unit;
    if (auto unit = applicationUnit(name))
        return unit;
    return busUnit(name);
}

/// What a group says that belongs to no application.
Kind plainKind(std::string_view name) {
    if (name == "init.scope" || name == "session.slice" || name == "background.slice" || name.ends_with(".service"))
        return Kind::service;
    return name.ends_with(".scope") ? Kind::scope : Kind::none;
}

Unit unitOfPath(std::string_view path) {
    constexpr std::size_t longestPath = 4096; // the kernel's limit
    if (path.size() > longestPath)
        return {};
    constexpr std::string_view deleted = " (deleted)"; // the group was removed, the process lives on
    if (path.ends_with(deleted))
        path.remove_suffix(deleted.size());
    Kind plain = Kind::none;
    bool inManager = false; // from here up all groups hold the user's whole session
    while (!path.empty()) {
        const std::size_t slash = path.rfind('/');
        const std::string_view above = slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
        const std::string_view name = path.substr(above.size() + (slash == std::string_view::npos ? 0 : 1));
        const std::string_view parent = above.substr(above.rfind('/') + 1);
        if (auto unit = owningUnit(name, parent)) {
            unit->group = path;
            return *std::move(unit);
        }
        inManager = inManager || between("user@", name, ".service").has_value();
        if (plain == Kind::none && !inManager)
            plain = plainKind(name);
        path = above;
    }
    return unitOf(plain);
}

/// The path in the line of the hierarchy that systemd keeps; the lines are "ID:CONTROLLERS:PATH".
std::optional<std::string_view> pathOf(std::string_view text, std::string_view id, std::string_view controllers) {
    for (const std::string_view line : Text::lines(text)) {
        const std::size_t first = line.find(':');
        const std::size_t second = first == std::string_view::npos ? first : line.find(':', first + 1);
        if (second == std::string_view::npos)
            continue;
        if ((id.empty() || line.substr(0, first) == id) && line.substr(first + 1, second - first - 1) == controllers)
            return line.substr(second + 1);
    }
    return std::nullopt;
}

} // namespace

ControlGroupUnit ControlGroupUnit::parse(std::string_view text) {
    // Where both versions are mounted, an engine may have put its container in the older one alone.
    const auto current = pathOf(text, "0", ""), older = pathOf(text, "", "name=systemd");
    Unit unit = current ? unitOfPath(*current) : Unit{};
    if (!older || !unit.group.empty())
        return unit;
    Unit other = unitOfPath(*older);
    return !other.group.empty() || unit.kind == Kind::none ? other : unit;
}

} // namespace ostrivane
