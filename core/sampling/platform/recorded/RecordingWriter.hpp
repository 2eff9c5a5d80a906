#pragma once

#include "core/sampling/platform/recorded/RecordingHeader.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ostrivane {

/// Writes a recording, whole lines only: when the disk is full, what could not be written whole is taken back.
class RecordingWriter {
public:
    explicit RecordingWriter(std::string file) : path(std::move(file)) {}
    ~RecordingWriter();
    RecordingWriter(const RecordingWriter&) = delete;
    RecordingWriter& operator=(const RecordingWriter&) = delete;

    /// Creates the file, with mode 0600, and writes its first line. An existing file is written over with `replace`
    /// only. Answers what went wrong, in the user's words; absent when nothing did.
    std::optional<std::string> open(const RecordingHeader& header, bool replace);

    /// Appends one line. Answers what went wrong; the file then ends with the line before.
    std::optional<std::string> append(std::string_view line);

    /// What is written to is a file, and no device or pipe.
    bool isFile() const { return isRegular; }

private:
    std::string path;
    int descriptor = -1;
    bool isRegular = false;
    std::int64_t whole = 0; ///< bytes of whole lines
};

} // namespace ostrivane
