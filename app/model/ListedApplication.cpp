#include "app/model/ListedApplication.hpp"

namespace ostrivane {

RunningApps recognisable(const std::vector<ListedApplication>& applications) {
    constexpr long prohibited = 2;
    RunningApps running;
    for (const ListedApplication& application : applications)
        if (application.bundlePath && application.activationPolicy != prohibited && application.pid > 0)
            running[*application.bundlePath] = application.pid;
    return running;
}

} // namespace ostrivane
