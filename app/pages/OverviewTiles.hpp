#pragma once

#include "app/model/Preferences.hpp"
#include "app/widgets/MetricTile.hpp"
#include "core/model/Page.hpp"

#include <array>
#include <optional>
#include <vector>

namespace ostrivane {

struct AppState;

enum class TileKind { cpu, memory, gpu, temperature, network, disk, battery, power };
inline constexpr std::array<TileKind, 8> tileKinds{TileKind::cpu,         TileKind::memory,  TileKind::gpu,
                                                   TileKind::temperature, TileKind::network, TileKind::disk,
                                                   TileKind::battery,     TileKind::power};

struct OverviewTile {
    TileText text;
    std::vector<TileLine> lines{};
    std::optional<double> top{}; ///< of the lines' scale; absent: the largest of the points

    friend bool operator==(const OverviewTile&, const OverviewTile&) = default;
};

/// Where a tile leads.
Page pageOf(TileKind kind);

/// Absent for what this machine has no reading of. One that was read before stays, so that tiles do not come and go.
std::optional<OverviewTile> presentTile(TileKind kind, const AppState& state, TemperatureSource source);

/// Columns in which so many tiles fill their rows best; at most 4, and at most `room`.
int tileColumns(int tiles, int room);

} // namespace ostrivane
