#pragma once

#include <string>
#include <string_view>

namespace ostrivane {

/// What the name of a process's control group says about who started it.
struct ControlGroupUnit {
    enum class Kind {
        none,        ///< no control group, or one that says nothing
        scope,       ///< a login session, a terminal's tab or another group made for a user's command
        service,     ///< a plain service of the system or of the session
        application, ///< started by a desktop, or by the message bus on an application's behalf
        flatpak,
        snap,
        docker,
        podman,
        container, ///< of another engine
    };

    Kind kind = Kind::none;
    std::string id;       ///< application or flatpak ID, name on the message bus, name of the snap
    std::string snapApp;  ///< application within the snap
    std::string launcher; ///< who started the application, when its unit says so: "gnome", "KDE"
    std::string group;    ///< path of the group that says this; the same for all processes of the unit
    bool isAutostart = false;

    bool isContainer() const { return kind == Kind::docker || kind == Kind::podman || kind == Kind::container; }

    /// Takes /proc/PID/cgroup as it is. Anything else gives `none`.
    static ControlGroupUnit parse(std::string_view text);

    friend bool operator==(const ControlGroupUnit&, const ControlGroupUnit&) = default;
};

} // namespace ostrivane
