#include "app/pages/Links.hpp"

#include "app/model/AppModel.hpp"
#include "core/model/Page.hpp"

#include <optional>
#include <utility>

namespace ostrivane {

void openProcess(AppModel& model, std::int32_t pid) {
    model.selectProcess(std::nullopt);
    model.select(Page::processes);
    model.selectProcess(pid);
}

void openApp(AppModel& model, std::string key) {
    model.selectApp(std::nullopt);
    model.select(Page::applications);
    model.selectApp(std::move(key));
}

} // namespace ostrivane
