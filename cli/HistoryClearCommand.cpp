#include "cli/Commands.hpp"
#include "cli/Consent.hpp"
#include "cli/HistoryCommands.hpp"
#include "cli/HistoryStatusText.hpp"
#include "cli/Output.hpp"
#include "core/history/HistoryLock.hpp"
#include "core/model/JSON.hpp"
#include "core/model/Text.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

namespace ostrivane::cli {

namespace {

std::string question(const HistoryPlace& place) {
    return fmt::format("Delete all history in {}? Samples, alerts, sessions and storage trends are removed for good.",
                       Text::visible(place.file));
}

int refuse(std::int64_t pid, const std::string& name) {
    const std::string writer = name.empty() ? "another program" : name;
    writeError(pid > 0 ? fmt::format("{} (process {}) keeps this history now; end it first", writer, pid)
                       : fmt::format("{} keeps this history now; end it first", writer));
    return failed;
}

bool isEmpty(const HistoryStatus& status) {
    return !status.readError && status.resolutions.empty() && status.apps == 0 && status.alerts == 0 &&
           status.sessions == 0 && status.storageSizes == 0;
}

/// The lock must be held: a writer would go on from what it has in memory.
int clearLocked(const HistoryPlace& place, bool asJSON) {
    HistoryReader history(place, HistoryAccess::readWrite);
    const auto before = history.status();
    if (before && before->openError) {
        writeError(fmt::format("{}: {}; where it is damaged, remove it and another one is begun", place.file,
                               *before->openError));
        return failed;
    }
    history.order([](HistoryStore& store) { store.clearAll(); });
    const auto problem = history.writeProblem();
    const auto after = history.status();
    if (!before || !after || !isEmpty(*after)) {
        writeError(fmt::format("{} could not be emptied: {}; where it is damaged, remove it and another one is begun",
                               place.file, problem.value_or("it could not be read afterwards")));
        return failed;
    }
    const Cleared cleared{*before, *after};
    const Written written = writeOut(asJSON ? JSON::text(cleared) + "\n" : clearedText(cleared));
    if (problem) {
        writeError("the file may still hold traces of what was deleted: " + *problem);
        return failed;
    }
    return statusAfter(written);
}

int clear(bool isAgreedTo, bool asJSON) {
    if (!canDecide(isAgreedTo))
        return misused;
    const auto place = historyPlace();
    if (!place)
        return failed;
    if (place->problem) {
        writeError(*place->problem);
        return failed;
    }
    if (!place->exists)
        return statusAfter(writeOut(noHistoryText(*place)));
    if (place->writer)
        return refuse(place->writer->pid, place->writer->name);
    if (!isAgreedTo && !isAgreed(question(*place)))
        return statusAfter(writeOut("Nothing was deleted.\n"));
    const auto lock = HistoryLock::take(place->folder, "ostrivanectl history clear");
    if (const auto* holder = std::get_if<HistoryLock::Holder>(&lock))
        return refuse(holder->pid, holder->name);
    if (const auto* problem = std::get_if<HistoryLock::Problem>(&lock)) {
        writeError(*problem);
        return failed;
    }
    return clearLocked(*place, asJSON);
}

} // namespace

void addHistoryClearCommand(CLI::App& history, int& status) {
    struct Request {
        bool isAgreedTo = false;
        bool asJSON = false;
    };
    auto request = std::make_shared<Request>();
    CLI::App* command = history.add_subcommand("clear", "Delete all history");
    command->add_flag("--yes", request->isAgreedTo, "Do not ask");
    command->add_flag("--json", request->asJSON, "Print what the file held before and holds now as JSON");
    command->callback([request, &status] { status = clear(request->isAgreedTo, request->asJSON); });
}

} // namespace ostrivane::cli
