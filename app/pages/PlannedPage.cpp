#include "app/pages/PlannedPage.hpp"

#include "app/widgets/EmptyState.hpp"
#include "app/widgets/Icons.hpp"
#include "app/widgets/Strings.hpp"

namespace ostrivane {

PlannedPage::PlannedPage(Page page, PageContext& given, QWidget* parent) : PageView(page, given, parent) {
    auto* state = new EmptyState(Icons::nameOf(page), this);
    state->set(tr("%1 is not there yet").arg(text(title(page, given.words))), plannedText(page));
    setBody(state, true);
}

QString plannedText(Page page) {
    switch (page) {
    case Page::disk:
        return QStringLiteral("It will show what is read and written, every volume, and who writes most.");
    case Page::network:
        return QStringLiteral("It will show what comes in and goes out, every interface, and who is connected where.");
    case Page::battery:
        return QStringLiteral("It will show charge, drain and condition of the battery, and who draws the power.");
    case Page::thermal:
        return QStringLiteral("It will show temperatures, fans and thermal pressure.");
    case Page::projects:
        return QStringLiteral("It will show your projects with their development servers and containers.");
    case Page::ports:
        return QStringLiteral("It will show which ports are open, and to whom.");
    case Page::ai:
        return QStringLiteral("It will show local AI runtimes and the models that they hold in memory.");
    case Page::storage:
        return QStringLiteral("It will show what fills the disk, and clean up what you choose.");
    case Page::organizer:
        return QStringLiteral("It will sort the loose files of a folder, with a way back.");
    case Page::audio:
        return QStringLiteral("It will show where sound goes and what the sound system costs.");
    case Page::devices:
        return QStringLiteral("It will show paired devices, drives and this machine itself.");
    case Page::overview:
    case Page::health:
    case Page::cpu:
    case Page::memory:
    case Page::gpu:
    case Page::applications:
    case Page::processes:
    case Page::history:
    case Page::alerts:
    case Page::sessions:
    case Page::settings:
        return {};
    }
    return {};
}

} // namespace ostrivane
