#pragma once

#include <cstdint>
#include <string>

namespace ostrivane {

class AppModel;

/// To a process, or an application, on its page. It is chosen anew while that page is shown, which so brings it into
/// view even where it was selected there before.
void openProcess(AppModel& model, std::int32_t pid);
void openApp(AppModel& model, std::string key);

} // namespace ostrivane
