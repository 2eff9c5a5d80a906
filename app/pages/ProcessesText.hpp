#pragma once

#include "core/model/SystemSnapshot.hpp"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>

namespace ostrivane {

/// What the panel below the table says of the selected process.
struct ProcessPanel {
    QString name;
    QString kind;        ///< "Vite"; empty: no development tool
    QString facts;       ///< "PID 48211 · parent zsh (4133) · Running · 22 threads · up 3d 7h"
    QString commandLine; ///< empty where the system does not tell
    QString activity;    ///< "in ~/code/storefront · reads 0 B/s, writes 1.2 MB/s · 1.48 W"; may be empty

    friend bool operator==(const ProcessPanel&, const ProcessPanel&) = default;
};

/// The process with that pid; null when there is none.
const ProcessSnapshot* findProcess(const SystemSnapshot& snapshot, std::int32_t pid);

/// Its parent; null for one that is its own, and for one that is not in the snapshot.
const ProcessSnapshot* parentOf(const SystemSnapshot& snapshot, const ProcessSnapshot& process);

/// @param home  the user's folder, which reads as "~"
ProcessPanel presentProcess(const ProcessSnapshot& process, const SystemSnapshot& snapshot, const std::string& home);

/// The same for a process that has ended since: who it was, and no figures.
ProcessPanel presentEnded(const ProcessSnapshot& process);

/// "612 running"; empty where none was seen.
QString runningText(const SystemSnapshot& snapshot);

/// What the asterisk means.
QString processesNote();

/// "214 owned by other users (limited metrics)"; empty where all are measured.
QString restrictedText(const SystemSnapshot& snapshot);

} // namespace ostrivane
