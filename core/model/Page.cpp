#include "core/model/Page.hpp"

#include "core/model/PlatformWords.hpp"

namespace ostrivane {

namespace {

constexpr std::array top{Page::overview, Page::health};
constexpr std::array monitoring{Page::cpu,     Page::memory,  Page::gpu,    Page::disk,
                                Page::network, Page::battery, Page::thermal};
constexpr std::array activity{Page::applications, Page::processes};
constexpr std::array developer{Page::projects, Page::ports, Page::ai};
constexpr std::array insights{Page::history, Page::alerts, Page::sessions};
constexpr std::array system{Page::storage, Page::organizer, Page::audio, Page::devices};

constexpr std::array<PageSection, 6> sections{{{"top", std::nullopt, top},
                                               {"monitoring", "Monitoring", monitoring},
                                               {"activity", "Activity", activity},
                                               {"developer", "Developer", developer},
                                               {"insights", "Insights", insights},
                                               {"system", "System", system}}};

} // namespace

std::string title(Page page, const PlatformWords& words) {
    switch (page) {
    case Page::overview:
        return "Overview";
    case Page::health:
        return std::string(words.computerLabel) + " Health";
    case Page::cpu:
        return "CPU";
    case Page::memory:
        return "Memory";
    case Page::gpu:
        return "GPU";
    case Page::disk:
        return "Disk";
    case Page::network:
        return "Network";
    case Page::battery:
        return "Battery";
    case Page::thermal:
        return "Thermal";
    case Page::applications:
        return "Applications";
    case Page::processes:
        return "Processes";
    case Page::projects:
        return "Projects";
    case Page::ports:
        return "Ports";
    case Page::ai:
        return "Local AI";
    case Page::history:
        return "History";
    case Page::alerts:
        return "Alerts";
    case Page::sessions:
        return "Sessions";
    case Page::storage:
        return "Storage";
    case Page::organizer:
        return "Organizer";
    case Page::audio:
        return "Sound";
    case Page::devices:
        return "Devices";
    case Page::settings:
        return "Settings";
    }
    return {};
}

std::span<const PageSection> pageSections() {
    return sections;
}

std::vector<Page> shortcutPages() {
    std::vector<Page> pages;
    for (const PageSection& section : sections)
        pages.insert(pages.end(), section.pages.begin(), section.pages.end());
    pages.push_back(Page::settings);
    return pages;
}

} // namespace ostrivane
