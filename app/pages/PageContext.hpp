#pragma once

#include "core/model/Date.hpp"
#include "core/model/PlatformWords.hpp"

#include <functional>
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
    std::function<bool()> hasTray;                           ///< whether the program can be reached without its window
    std::function<void(const std::string& path)>
        reveal; ///< shows a file in the file manager; empty where there is none
};

} // namespace ostrivane
