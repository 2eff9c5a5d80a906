#include "cli/Commands.hpp"
#include "cli/Output.hpp"
#include "cli/Reading.hpp"
#include "cli/Session.hpp"
#include "cli/Summary.hpp"
#include "core/model/SnapshotJSON.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <cstdint>
#include <limits>
#include <memory>

namespace ostrivane::cli {

namespace {

struct SnapshotOptions {
    Source source;
    bool json = false;
    std::int64_t ticks = 0; ///< 0: one figure of now, without those before it
};

ExitStatus printTicks(const SnapshotOptions& options) {
    std::int64_t left = options.ticks;
    Written written = Written::whole;
    const ExitStatus status = eachSnapshot(options.source, [&](const SharedSnapshot& snapshot, const Session&) {
        written = writeOut(snapshotJSON(*snapshot) + "\n");
        return --left > 0 && written == Written::whole;
    });
    return status == succeeded ? statusAfter(written) : status;
}

ExitStatus printNow(const SnapshotOptions& options) {
    ExitStatus status = succeeded;
    const SharedSnapshot snapshot = snapshotOfNow(options.source, 0, status).snapshot;
    if (!snapshot)
        return status;
    return statusAfter(writeOut(options.json ? snapshotJSON(*snapshot) + "\n" : summary(*snapshot)));
}

} // namespace

void addSnapshotCommand(CLI::App& app, int& status) {
    auto options = std::make_shared<SnapshotOptions>();
    options->source.speed = std::numeric_limits<double>::infinity();
    CLI::App* command = app.add_subcommand("snapshot", "Print what the computer does now");
    command->add_flag("--json", options->json, "Print the whole snapshot as JSON");
    command->add_option("--ticks", options->ticks, "Print that many snapshots, one JSON object a line")
        ->type_name("N")
        ->check(positiveNumber());
    addIntervalOption(*command, options->source);
    addReplayOption(*command, options->source);
    command->callback([options, &status] { status = options->ticks > 0 ? printTicks(*options) : printNow(*options); });
}

} // namespace ostrivane::cli
