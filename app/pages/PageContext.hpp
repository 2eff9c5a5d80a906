#pragma once

#include "app/model/WayBack.hpp"
#include "core/model/Date.hpp"
#include "core/model/PlatformWords.hpp"

#include <functional>
#include <optional>
#include <string>

namespace ostrivane {

class AppModel;
class LoginItem;

/// What a page works with beside the model.
struct PageContext {
    AppModel& model;
    const PlatformWords& words;
    LoginItem& loginItem;
    std::function<void(std::function<void()>)> onMainThread; ///< as `AppParts::onMainThread`
    std::function<Date()> now;                               ///< of a recording: when its latest tick began
    std::function<WayBack()> wayBack;                        ///< to the program, once its window is closed
    std::function<std::optional<std::string>()>
        otherKeeper{}; ///< which other program keeps the history now, as a sentence; absent where this one does
    std::function<void(const std::string& path)>
        reveal{}; ///< shows a file in the file manager; empty where there are none to show: those of a recording
};

} // namespace ostrivane
