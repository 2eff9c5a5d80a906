#include "app/pages/GPUText.hpp"

#include "app/model/AppState.hpp"
#include "app/pages/Figure.hpp"
#include "core/model/Formatters.hpp"

#include <algorithm>

namespace ostrivane {

namespace {

bool tellsOfApplications(const SystemSnapshot& snapshot) {
    return snapshot.gpu.perAppAvailable ||
           std::ranges::any_of(snapshot.applications,
                               [](const ApplicationSnapshot& app) { return app.gpu.has_value(); });
}

} // namespace

QString gpuShareText(std::optional<double> fraction) {
    constexpr double wholeFrom = 0.1;
    return text(Formatters::percent(fraction, fraction && *fraction >= wholeFrom ? 0 : 1));
}

GPUText presentGPU(const AppState& state) {
    const GPUSnapshot& gpu = state.snapshot->gpu;
    const auto percent = [&](std::optional<double> fraction) { return figure(state, Formatters::percent(fraction)); };
    GPUText shown;
    shown.subtitle = text(gpu.name);
    shown.isAvailable = !state.hasFirstSample || gpu.utilization || !state.live[LiveKey::gpu].empty();
    shown.usage = percent(gpu.utilization);
    if (gpu.rendererUtilization)
        shown.engines.push_back({std::nullopt, QStringLiteral("Renderer"), percent(gpu.rendererUtilization)});
    if (gpu.tilerUtilization)
        shown.engines.push_back({std::nullopt, QStringLiteral("Tiler"), percent(gpu.tilerUtilization)});

    const auto& today = state.gpuStatsToday;
    shown.today = {{QStringLiteral("Average"), percent(today ? std::optional(today->avg) : std::nullopt)},
                   {QStringLiteral("Peak"), percent(today ? std::optional(today->peak) : std::nullopt)}};
    if (gpu.memoryInUse)
        shown.memory.push_back({QStringLiteral("Memory in use"), figure(state, Formatters::bytes(*gpu.memoryInUse))});
    if (gpu.memoryAllocated)
        shown.memory.push_back(
            {QStringLiteral("Memory allocated"), figure(state, Formatters::bytes(*gpu.memoryAllocated))});
    const auto celsius = state.snapshot->thermal.gpuTemperature;
    shown.temperature = {{QStringLiteral("Temperature"), figure(state, Formatters::temperature(celsius))}};
    shown.hasTemperature = celsius || !state.live[LiveKey::gpuTemp].empty();

    shown.hasApplications = !state.hasFirstSample || tellsOfApplications(*state.snapshot);
    if (!shown.hasApplications)
        shown.applicationsNote = QStringLiteral("The graphics driver does not tell which application uses the GPU.");
    return shown;
}

} // namespace ostrivane
