#include "cli/Commands.hpp"
#include "cli/Output.hpp"
#include "cli/Reading.hpp"
#include "cli/Session.hpp"
#include "cli/UsageText.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ostrivane::cli {

namespace {

/// How far apart the engine asks for traffic by process, and for the figures of processes that it may not read itself.
/// Their rates need two answers.
constexpr double samplerSeconds = 4;

struct UsageOptions {
    Source source{.speed = std::numeric_limits<double>::infinity(), .interval = samplerSeconds};
    UsageChoice choice;
    std::string sort{rawValue(UsageSort::cpu)};
    bool json = false;
};

ExitStatus print(UsageSubject subject, UsageOptions& options) {
    options.choice.sort = *fromRawValue<UsageSort>(options.sort); // checked by the option
    ExitStatus status = succeeded;
    const auto [snapshot, limits] = snapshotOfNow(options.source, samplerSeconds, status);
    if (!snapshot)
        return status;
    return statusAfter(writeOut(options.json ? usageJSON(*snapshot, subject, options.choice)
                                             : usageText(*snapshot, limits, subject, options.choice, terminalWidth())));
}

void addUsageCommand(CLI::App& app, const std::string& name, const std::string& description, UsageSubject subject,
                     int& status) {
    auto options = std::make_shared<UsageOptions>();
    std::vector<std::string> orders;
    for (const auto& [order, text] : rawTexts(EnumTag<UsageSort>{}))
        orders.emplace_back(text);
    CLI::App* command = app.add_subcommand(name, description);
    command->add_option("--sort", options->sort, "What the order goes by, largest first; \"name\" by the alphabet")
        ->type_name("ORDER")
        ->check(CLI::IsMember(orders))
        ->capture_default_str();
    command
        ->add_option("--filter", options->choice.filter,
                     subject == UsageSubject::processes
                         ? "Only those with this in their name, path, arguments or user, or with this pid"
                         : "Only those with this in their name or identifier")
        ->type_name("TEXT");
    command->add_option("--limit", options->choice.limit, "At most that many")->type_name("N")->check(positiveNumber());
    command->add_flag("--json", options->json, "Print the records as a JSON array");
    addIntervalOption(*command, options->source);
    addReplayOption(*command, options->source);
    command->footer("Takes 4 seconds at least: rates need two readings, and traffic by process and the processes of\n"
                    "others are read no more often than that. A shorter interval makes the other rates those of its\n"
                    "last readings; of a recording its last tick is shown, at once.");
    command->callback([options, subject, &status] { status = print(subject, *options); });
}

} // namespace

void addProcessesCommand(CLI::App& app, int& status) {
    addUsageCommand(app, "processes", "List the processes and what each uses", UsageSubject::processes, status);
}

void addAppsCommand(CLI::App& app, int& status) {
    addUsageCommand(app, "apps", "List the applications and what all processes of each use", UsageSubject::applications,
                    status);
}

} // namespace ostrivane::cli
