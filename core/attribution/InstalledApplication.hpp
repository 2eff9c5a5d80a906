#pragma once

#include "core/model/Described.hpp"

#include <string>
#include <vector>

namespace ostrivane {

/// An application that a desktop entry describes, and which programs are its own.
struct InstalledApplication {
    std::string path; ///< of its desktop entry
    std::string id;   ///< "org.gnome.Terminal.desktop"; of "kde/a.desktop" it is "kde-a.desktop"
    std::string name; ///< in the user's language; may be empty
    std::string icon;
    bool noDisplay = false;
    std::vector<std::string> programs; ///< paths of executables; no other application has them
    std::vector<std::string> folders;  ///< all that runs from these is its own; no other application has them

    friend bool operator==(const InstalledApplication&, const InstalledApplication&) = default;
};
BOOST_DESCRIBE_STRUCT(InstalledApplication, (), (path, id, name, icon, noDisplay, programs, folders))
static_assert(describesEveryMember<InstalledApplication>);

using InstalledApplications = std::vector<InstalledApplication>;

} // namespace ostrivane
