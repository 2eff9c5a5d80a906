#pragma once

#include "app/widgets/TableColumn.hpp"
#include "core/model/SystemSnapshot.hpp"

#include <QPixmap>

#include <cstdint>
#include <optional>
#include <vector>

namespace ostrivane {

/// Which processes are listed.
enum class ProcessScope { all, mine, developer };

/// A process in the table; points into a snapshot.
struct ProcessRow {
    const ProcessSnapshot* process = nullptr;
    const ApplicationSnapshot* app = nullptr; ///< null: the snapshot does not list it
    bool isForeign = false;                   ///< another user's
};

/// What counts as full heat.
struct ProcessHeat {
    double cpu = 1;    ///< cores: the busiest process, but at least one core
    double memory = 0; ///< bytes: the largest process

    static ProcessHeat of(const std::vector<ProcessRow>& rows);
};

/// The user whose processes could be read in full; absent when no process tells.
std::optional<std::uint32_t> ownUser(const SystemSnapshot& snapshot);

std::vector<ProcessRow> processRows(const SystemSnapshot& snapshot);

/// That of its application; programs without one, and those of the system, share one.
QPixmap processIcon(const ProcessRow& row, int pixels, qreal deviceRatio);

/// @param wanted  part of the name, or the beginning of the pid; empty: any
bool isListed(const ProcessRow& row, ProcessScope scope, const QString& wanted);

/// @param heat  as it is at the time when a cell is drawn; must outlive the columns
std::vector<TableColumn<ProcessRow>> processColumns(const ProcessHeat& heat);

} // namespace ostrivane
