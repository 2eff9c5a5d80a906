#include "cli/Commands.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "cli/Summary.hpp"
#include "core/model/SnapshotJSON.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>

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

/// Prints what the ticks give, until there are enough of them.
class SnapshotRun {
public:
    explicit SnapshotRun(const SnapshotOptions& wanted) : options(wanted) {}

    int run() {
        session = std::make_unique<Session>(context.get_executor(), options.source, [this] { context.stop(); });
        if (const auto problem = session->problem())
            return fail(*problem);
        session->engine().addConsumer(
            [this](const SharedSnapshot& snapshot, const SamplingEngine::Turn&) { take(snapshot); });
        session->engine().start();
        context.run();
        if (const auto problem = session->problem())
            return fail(*problem);
        if (const auto remark = session->remark())
            writeError(*remark);
        if (options.ticks == 0 && last)
            write(options.json ? snapshotJSON(*last) + "\n" : summary(*last));
        return status;
    }

private:
    void take(const SharedSnapshot& snapshot) {
        if (session->problem()) // of the answers that this snapshot was made of
            return context.stop();
        ++taken;
        last = snapshot;
        if (options.ticks > 0)
            write(snapshotJSON(*snapshot) + "\n");
        // Rates need two ticks. A recording is played to its end: the last tick is its "now".
        const std::int64_t enough = options.ticks > 0               ? options.ticks
                                    : options.source.replay.empty() ? 2
                                                                    : std::numeric_limits<std::int64_t>::max();
        if (taken >= enough)
            context.stop();
    }

    void write(const std::string& text) {
        const Written written = writeOut(text);
        if (written == Written::whole)
            return;
        status = written == Written::failed ? failed : succeeded;
        context.stop();
    }

    static int fail(const std::string& problem) {
        writeError(problem);
        return failed;
    }

    const SnapshotOptions& options;
    boost::asio::io_context context{1};
    std::unique_ptr<Session> session; // goes before the context that its engine runs on
    SharedSnapshot last;
    std::int64_t taken = 0;
    int status = succeeded;
};

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
    command->callback([options, &status] { status = SnapshotRun(*options).run(); });
}

} // namespace ostrivane::cli
