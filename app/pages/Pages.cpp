#include "app/pages/Pages.hpp"

#include "app/pages/AlertsPage.hpp"
#include "app/pages/ApplicationsPage.hpp"
#include "app/pages/CPUPage.hpp"
#include "app/pages/GPUPage.hpp"
#include "app/pages/HealthPage.hpp"
#include "app/pages/HistoryPage.hpp"
#include "app/pages/MemoryPage.hpp"
#include "app/pages/OverviewPage.hpp"
#include "app/pages/PlannedPage.hpp"
#include "app/pages/ProcessesPage.hpp"
#include "app/pages/SessionsPage.hpp"
#include "app/pages/SettingsPage.hpp"

namespace ostrivane {

PageView* makePage(Page page, PageContext& context, QWidget* parent) {
    switch (page) {
    case Page::overview:
        return new OverviewPage(context, parent);
    case Page::health:
        return new HealthPage(context, parent);
    case Page::cpu:
        return new CPUPage(context, parent);
    case Page::memory:
        return new MemoryPage(context, parent);
    case Page::gpu:
        return new GPUPage(context, parent);
    case Page::applications:
        return new ApplicationsPage(context, parent);
    case Page::processes:
        return new ProcessesPage(context, parent);
    case Page::history:
        return new HistoryPage(context, parent);
    case Page::alerts:
        return new AlertsPage(context, parent);
    case Page::sessions:
        return new SessionsPage(context, parent);
    case Page::settings:
        return new SettingsPage(context, parent);
    case Page::disk:
    case Page::network:
    case Page::battery:
    case Page::thermal:
    case Page::projects:
    case Page::ports:
    case Page::ai:
    case Page::storage:
    case Page::organizer:
    case Page::audio:
    case Page::devices:
        break;
    }
    return new PlannedPage(page, context, parent);
}

} // namespace ostrivane
