#include "cli/Commands.hpp"
#include "cli/JudgedMachine.hpp"
#include "cli/JudgementText.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "core/model/Formatters.hpp"
#include "core/model/JSON.hpp"
#include "core/model/Statistics.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>

namespace ostrivane::cli {

namespace {

using Presentation = std::function<std::string(const AppState&, bool json)>;

void addJudgingCommand(CLI::App& app, const std::string& name, const std::string& description,
                       const Presentation& present, int& status) {
    struct Request {
        Source source{.speed = std::numeric_limits<double>::infinity()};
        bool json = false;
    };
    auto request = std::make_shared<Request>();
    CLI::App* command = app.add_subcommand(name, description);
    command->add_flag("--json", request->json, "Print the records as a JSON array");
    addIntervalOption(*command, request->source);
    addReplayOption(*command, request->source);
    command->callback([request, present, &status] {
        ExitStatus outcome = succeeded;
        const auto state = judgedMachine(request->source, outcome);
        status = state ? statusAfter(writeOut(present(*state, request->json))) : outcome;
    });
}

/// The verdict on the processor speaks of five minutes, of which this command has seen a moment.
std::string remark(const AppState& state) {
    constexpr double most = 240;
    const double watched = Statistics::timeSpan(state.live[LiveKey::cpu]) + state.snapshot->interval;
    if (watched >= most)
        return {};
    return fmt::format("\nThe processor was watched for {} only.\n", Formatters::duration(watched));
}

} // namespace

void addHealthCommand(CLI::App& app, int& status) {
    const auto present = [](const AppState& state, bool json) {
        return json ? JSON::text(state.health) + "\n"
                    : healthText(state.statusSummary(), state.health, terminalWidth()) + remark(state);
    };
    addJudgingCommand(app, "health", "Say how the computer is, side by side", present, status);
}

void addInsightsCommand(CLI::App& app, int& status) {
    const auto present = [](const AppState& state, bool json) {
        return json ? JSON::text(state.insights) + "\n" : insightsText(state.insights, terminalWidth());
    };
    addJudgingCommand(app, "insights", "Say what stands out right now", present, status);
}

} // namespace ostrivane::cli
