#pragma once

#include "core/model/RawValue.hpp"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

struct PlatformWords;

/// Every screen of the main window. The raw values stand in the command line, the menus and the sampling demand.
enum class Page {
    overview,
    health,
    cpu,
    memory,
    gpu,
    disk,
    network,
    battery,
    thermal,
    applications,
    processes,
    projects,
    ports,
    ai,
    history,
    alerts,
    sessions,
    storage,
    organizer,
    audio,
    devices,
    settings
};
constexpr std::array<RawText<Page>, 22> rawTexts(EnumTag<Page>) {
    return {{{Page::overview, "overview"},
             {Page::health, "health"},
             {Page::cpu, "cpu"},
             {Page::memory, "memory"},
             {Page::gpu, "gpu"},
             {Page::disk, "disk"},
             {Page::network, "network"},
             {Page::battery, "battery"},
             {Page::thermal, "thermal"},
             {Page::applications, "applications"},
             {Page::processes, "processes"},
             {Page::projects, "projects"},
             {Page::ports, "ports"},
             {Page::ai, "ai"},
             {Page::history, "history"},
             {Page::alerts, "alerts"},
             {Page::sessions, "sessions"},
             {Page::storage, "storage"},
             {Page::organizer, "organizer"},
             {Page::audio, "audio"},
             {Page::devices, "devices"},
             {Page::settings, "settings"}}};
}

/// "Local AI".
std::string title(Page page, const PlatformWords& words);

/// A group of pages in the sidebar.
struct PageSection {
    std::string_view id;
    std::optional<std::string_view> title;
    std::span<const Page> pages;
};

/// In the order of the sidebar. `Page::settings` is in none.
std::span<const PageSection> pageSections();

/// The pages of all sections in their order, then the settings.
std::vector<Page> shortcutPages();

} // namespace ostrivane
