#pragma once

#include "app/model/AppState.hpp"
#include "app/widgets/StatGrid.hpp"
#include "app/widgets/TableColumn.hpp"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane {

/// What is known of an application, whether it still runs or not.
struct AppHead {
    std::string key;
    std::string name;
    std::optional<std::string> bundlePath;
    std::optional<std::string> revealPath; ///< what the file manager can show of it

    friend bool operator==(const AppHead&, const AppHead&) = default;
};

/// The head of the application with that key; of one that is not in the snapshot, what was known `before`, else a name
/// made from its key.
AppHead appHead(const AppState& state, const std::string& key, const std::optional<AppHead>& before);

struct AppDetailText {
    QString summary; ///< "14 processes · running for 1d 6h"; "Unavailable" without the application
    std::vector<Stat> stats;
};

/// The figures of an application; null: it is not in the snapshot.
AppDetailText presentAppDetail(const AppState& state, const ApplicationSnapshot* app);

/// Its processes' columns. A figure that the system hides is a dash.
std::vector<TableColumn<const ProcessSnapshot*>> appProcessColumns();

} // namespace ostrivane
