#pragma once

#include "core/model/Described.hpp"
#include "core/sampling/HostInfo.hpp"
#include "core/sampling/platform/Platform.hpp"

#include <cstdint>
#include <string>

namespace ostrivane {

/// The first line of a recording. Each further line is one tick: a JSON object with the time "at" which it began, the
/// later readings of the "clock" within it, and one member for each question that the machine was asked, named
/// "subject.question", with ":" and what it was about behind that where the same question is put of many things: a
/// process, a path. A member that is `null` was asked and not answered; one that is missing was not asked.
struct RecordingHeader {
    static constexpr const char* knownFormat = "ostrivane-recording";
    static constexpr std::int64_t knownVersion = 1;

    std::string format = knownFormat;
    std::int64_t version = knownVersion;
    std::string program; ///< version of the program that wrote it
    Platform platform = Platform::Linux;
    HostInfo host;

    friend bool operator==(const RecordingHeader&, const RecordingHeader&) = default;
};
BOOST_DESCRIBE_STRUCT(RecordingHeader, (), (format, version, program, platform, host))
static_assert(describesEveryMember<RecordingHeader>);

} // namespace ostrivane
