#include "cli/Commands.hpp"
#include "cli/HistoryCommands.hpp"
#include "cli/Output.hpp"
#include "core/history/HistoryExport.hpp"
#include "core/model/Text.hpp"
#include "core/model/WholeFile.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <memory>
#include <string>

namespace ostrivane::cli {

namespace {

struct ExportRequest {
    std::string range{rawValue(HistoryRange::hours24)};
    std::string file; ///< empty: standard output
};

int exportRows(const ExportRequest& request) {
    const auto place = historyPlace();
    if (!place)
        return failed;
    HistoryReader history(*place, HistoryAccess::readOnly);
    const auto rows = rowsOf(history, *fromRawValue<HistoryRange>(request.range), currentDate());
    if (const auto problem = history.problem()) {
        writeError(*problem);
        return failed;
    }
    const std::string text = HistoryExport::text(rows);
    if (!place->exists)
        writeError("there is no history yet; the column line stands alone");
    if (request.file.empty())
        return statusAfter(writeOut(text));
    if (const auto problem = WholeFile::write(request.file, text)) {
        writeError(*problem);
        return failed;
    }
    writeNote(fmt::format("{} {} in {}", rows.size(), rows.size() == 1 ? "row" : "rows", Text::visible(request.file)));
    return succeeded;
}

} // namespace

void addHistoryExportCommand(CLI::App& history, int& status) {
    auto request = std::make_shared<ExportRequest>();
    CLI::App* command = history.add_subcommand("export", "Write the machine's figures as comma-separated values");
    addRangeOption(*command, request->range);
    command->add_option("--out", request->file, "Where to, in place of standard output; a file there is replaced")
        ->type_name("FILE")
        ->check([](const std::string& file) { return file.empty() ? "a file must be named" : std::string(); });
    command->footer("Times are in UTC, loads fractions, traffic bytes per second. An empty field: not known.");
    command->callback([request, &status] { status = exportRows(*request); });
}

} // namespace ostrivane::cli
