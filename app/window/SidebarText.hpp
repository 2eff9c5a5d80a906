#pragma once

#include "app/widgets/Theme.hpp"
#include "core/model/Date.hpp"
#include "core/model/Page.hpp"

#include <QString>

#include <optional>

namespace ostrivane {

struct AppState;

/// What stands at the right of a page's row in the sidebar; nothing where there is nothing to say.
struct SidebarValue {
    QString text{};
    Tone tone = Tone::text3;
    bool isStrong = false;
    std::optional<Condition> condition{}; ///< a glyph in place of a text
    bool isRecording = false;             ///< a disc ahead of the text
    QString words{};                      ///< the same for assistive programs, where it differs from `text`

    friend bool operator==(const SidebarValue&, const SidebarValue&) = default;
};

/// @param midnight  when the day began where the person is
SidebarValue sidebarValue(Page page, const AppState& state, Date now, Date midnight);

} // namespace ostrivane
