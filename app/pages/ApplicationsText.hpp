#pragma once

#include "app/pages/CountText.hpp"
#include "app/widgets/TableColumn.hpp"
#include "core/model/PlatformWords.hpp"
#include "core/model/RawValue.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <QString>

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace ostrivane {

/// What the applications can be put in order by. The raw values are the ids of the columns.
enum class ApplicationSort { memory, cpu, energy, disk, network, name };

/// In the order of the menu.
constexpr std::array<RawText<ApplicationSort>, 6> rawTexts(EnumTag<ApplicationSort>) {
    return {{{ApplicationSort::memory, "memory"},
             {ApplicationSort::cpu, "cpu"},
             {ApplicationSort::energy, "energy"},
             {ApplicationSort::disk, "disk"},
             {ApplicationSort::network, "network"},
             {ApplicationSort::name, "name"}}};
}

QString title(ApplicationSort sort);

/// What of an application's figures the system hides of every one of its processes. Their sums, 0, are then no
/// readings.
struct HiddenFigures {
    bool use = false;  ///< processor time and memory
    bool disk = false; ///< what it reads and writes
};
HiddenFigures hiddenFigures(const ApplicationSnapshot& app, std::span<const ProcessSnapshot> processes);

/// A row of the table: points into a snapshot.
struct ApplicationRow {
    const ApplicationSnapshot* app = nullptr;
    HiddenFigures hidden{};
    double largest = 0; ///< bytes of the application that holds most
};

/// The applications as the toolbar narrows them down.
/// @param filter  a part of the name, whatever its case; blanks around it do not count
/// @param includesSystem  whether what belongs to the system is listed too
std::vector<ApplicationRow> applicationRows(const SystemSnapshot& snapshot, const QString& filter, bool includesSystem);

/// "41 applications · 612 processes", of what is listed.
QString applicationCounts(std::span<const ApplicationRow> rows);

/// Their columns, in order; each of `ApplicationSort` is one of them. The traffic's is for machines that tell of it.
std::vector<TableColumn<ApplicationRow>> applicationColumns(const PlatformWords& words);

/// Beside the switch that lists what belongs to the system: "macOS & other users".
QString systemSwitchText(const PlatformWords& words);

/// Why no traffic is shown; empty where it is.
QString missingTrafficText(const SystemSnapshot& snapshot, bool isWanted, const PlatformWords& words);

/// Bytes per second in both directions; absent where neither is known.
std::optional<double> traffic(const ApplicationSnapshot& app);

/// What can be shown in the file manager for an application: its bundle or desktop entry, else the program of its main
/// process. Absent for the system as a whole.
std::optional<std::string> revealPath(const ApplicationSnapshot& app, std::span<const ProcessSnapshot> processes);

/// "1 process", "612 processes".
QString processCountText(std::int64_t count);

} // namespace ostrivane
