#pragma once

#include "core/model/Date.hpp"

#include <QString>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace ostrivane {

class HistoryStore;

/// How writing the history to a file went.
struct ExportOutcome {
    std::string path;
    std::size_t rows = 0;
    std::optional<std::string> problem{}; ///< why there is no file
};

/// Writes the machine's rows between both dates to a file of comma-separated values, on a thread of its own, as the
/// file may lie on a slow disk. The answer comes from there, or from the store's strand.
void exportHistory(HistoryStore& history, Date since, Date until, std::string path,
                   std::function<void(ExportOutcome)> answer);

/// "Exported 1440 rows to history.csv", or that it failed.
QString exportTitle(const ExportOutcome& outcome);

} // namespace ostrivane
