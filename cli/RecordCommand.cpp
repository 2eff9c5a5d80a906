#include "cli/Commands.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "core/Version.hpp"
#include "core/model/Text.hpp"
#include "core/sampling/MachineCollectors.hpp"
#include "core/sampling/platform/NativeMachine.hpp"
#include "core/sampling/platform/recorded/RecordingMachine.hpp"
#include "core/sampling/platform/recorded/RecordingWriter.hpp"
#include "core/sampling/platform/recorded/TickNotes.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <fmt/format.h>

#include <csignal>
#include <cstdint>
#include <memory>

namespace ostrivane::cli {

namespace {

struct RecordOptions {
    Source source;
    std::string file;
    bool force = false;
    std::int64_t ticks = 0; ///< 0: until interrupted
};

RecordingHeader headerFor(Machine& machine) {
    RecordingHeader header;
    header.program = version;
    header.platform = machine.platform();
    header.host = machine.host().info();
    return header;
}

int record(const RecordOptions& options) {
    auto notes = std::make_shared<TickNotes>();
    auto machine = recordingMachine(nativeMachine(), notes);
    RecordingWriter writer(options.file);
    if (const auto problem = writer.open(headerFor(*machine), options.force)) {
        writeError(*problem);
        return failed;
    }

    boost::asio::io_context context{1};
    SamplingEngine engine(context.get_executor(), std::make_unique<MachineCollectors>(std::move(machine)),
                          recordingClock(nativeClock(context.get_executor()), notes));
    demandEverything(engine, options.source.interval);
    int status = succeeded;
    std::int64_t recorded = 0;
    engine.addConsumer([&](const SharedSnapshot&, const SamplingEngine::Turn&) {
        if (const auto problem = writer.append(notes->line())) {
            writeError(*problem);
            status = failed;
            return context.stop();
        }
        if (++recorded == options.ticks)
            context.stop();
    });
    boost::asio::signal_set interruption(context);
    // Into a pipe that nobody empties a line would wait for ever: there a signal ends the program as it always does.
    if (writer.isFile()) {
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            interruption.add(signal);
        interruption.async_wait([&](const boost::system::error_code& error, int) {
            if (!error)
                context.stop();
        });
    }
    engine.start();
    context.run();
    writeNote(fmt::format("{} {} in {}", recorded, recorded == 1 ? "tick" : "ticks", Text::visible(options.file)));
    return status;
}

} // namespace

void addRecordCommand(CLI::App& app, int& status) {
    auto options = std::make_shared<RecordOptions>();
    CLI::App* command =
        app.add_subcommand("record", "Write the raw readings of every tick to a file, until interrupted");
    command->add_option("FILE", options->file, "Where to")->required();
    command->add_flag("--force", options->force, "Write over a file that exists");
    command->add_option("--ticks", options->ticks, "End after that many ticks")
        ->type_name("N")
        ->check(positiveNumber());
    addIntervalOption(*command, options->source);
    command->callback([options, &status] { status = record(*options); });
}

} // namespace ostrivane::cli
