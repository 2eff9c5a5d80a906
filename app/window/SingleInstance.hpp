#pragma once

#include "core/model/Page.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ostrivane {

/// Sees to it that one program serves the user's session. Belongs to the main thread.
class SingleInstance {
public:
    enum class Role {
        first,  ///< this program is the one
        second, ///< another one runs, and was told to show its window
        stuck   ///< another one runs, and could not be told
    };

    virtual ~SingleInstance() = default;

    /// Tries to be the first; else tells the first to show its window, on `page` where one is given.
    virtual Role claim(const std::optional<Page>& page) = 0;

    /// What a further start asks of this one, the first.
    virtual void onActivated(std::function<void(std::optional<Page>)> activated) = 0;
};

/// @param folder  where a lock can lie when the desktop has no means of its own
std::unique_ptr<SingleInstance> nativeSingleInstance(const std::string& folder);

} // namespace ostrivane
