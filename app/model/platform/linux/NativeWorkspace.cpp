#include "app/model/Workspace.hpp"

namespace ostrivane {

/// No desktop has a list to ask for.
std::unique_ptr<Workspace> nativeWorkspace() {
    return nullptr;
}

} // namespace ostrivane
