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
    virtual ~SingleInstance() = default;

    /// Whether this program is the one from now on: no other runs.
    virtual bool claim() = 0;

    /// Has the one that runs show its window, on `page` where one is given. Whether it could be told.
    virtual bool showFirst(const std::optional<Page>& page) = 0;

    /// Whether a further start, or the system, can have this one show its window.
    virtual bool canBeActivated() const = 0;

    /// What a further start asks of this one, the first, which the system has launched by now.
    virtual void onActivated(std::function<void(std::optional<Page>)> activated) = 0;
};

/// @param folder  where a lock can lie when the desktop has no means of its own
std::unique_ptr<SingleInstance> nativeSingleInstance(const std::string& folder);

} // namespace ostrivane
