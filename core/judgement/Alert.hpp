#pragma once

#include "core/judgement/AlertKind.hpp"
#include "core/judgement/AlertSeverity.hpp"
#include "core/model/Date.hpp"
#include "core/model/Described.hpp"

#include <boost/uuid/uuid.hpp>

#include <optional>
#include <string>

namespace ostrivane {

/// Something that deserves the user's attention. Its identity is `id`.
struct Alert {
    boost::uuids::uuid id{};
    Date date; ///< of the snapshot that it was found in
    AlertKind kind = AlertKind::sustainedCPU;
    AlertSeverity severity = AlertSeverity::info;
    std::string title;
    std::string body;
    /// An application's key, "system", "cpu", "thermal", "battery", a process id or a mount point, by `kind`.
    std::optional<std::string> subject;
    bool notify = false;

    friend bool operator==(const Alert&, const Alert&) = default;
};
BOOST_DESCRIBE_STRUCT(Alert, (), (id, date, kind, severity, title, body, subject, notify))
static_assert(describesEveryMember<Alert>);

} // namespace ostrivane
