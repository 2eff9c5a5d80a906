#include "cli/Commands.hpp"
#include "cli/HistoryAnswer.hpp"
#include "cli/HistoryCommands.hpp"
#include "cli/HistoryStatusText.hpp"
#include "cli/HistoryText.hpp"
#include "cli/Output.hpp"
#include "core/model/JSON.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ostrivane::cli {

namespace {

struct HistoryRequest {
    std::string range{rawValue(HistoryRange::hours24)};
    std::string application;
    std::int64_t limit = defaultListLimit;
    bool json = false;
    bool withTable = false;
};

HistoryRange rangeOf(const HistoryRequest& request) {
    return *fromRawValue<HistoryRange>(request.range); // checked by the option
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

Layout layoutNow() {
    return {terminalWidth(), glyphsOf(environment("LC_ALL"), environment("LC_CTYPE"), environment("LANG"))};
}

template <class Record>
std::string json(const Record& record) {
    return JSON::text(record) + "\n";
}

using Presentation = std::function<HistoryAnswer(HistoryReader&, const HistoryRequest&)>;

int printStatus(const HistoryRequest& request) {
    const auto place = historyPlace();
    if (!place)
        return failed;
    HistoryReader history(*place, HistoryAccess::readOnly);
    const HistoryReport report{*place, history.status()};
    const Written written = writeOut(request.json ? json(report) : statusText(report));
    if (const auto problem = readProblem(report)) {
        writeError(*problem);
        return failed;
    }
    return statusAfter(written);
}

HistoryAnswer rows(HistoryReader& history, const HistoryRequest& request) {
    const Date now = currentDate();
    const auto found = rowsOf(history, rangeOf(request), now);
    return {request.json ? json(found) : rowsText(found, rangeOf(request), now, request.withTable, layoutNow())};
}

std::vector<AppUsageSummary> applications(HistoryReader& history, HistoryRange range, Date now, std::int64_t limit) {
    return history.ask<std::vector<AppUsageSummary>>(
        [&](HistoryStore& store, auto answer) { store.topApps(lastOf(range, now).start, limit, std::move(answer)); });
}

HistoryAnswer top(HistoryReader& history, const HistoryRequest& request) {
    const auto found = applications(history, rangeOf(request), currentDate(), request.limit);
    return {request.json ? json(found) : topText(found, rangeOf(request), terminalWidth())};
}

HistoryAnswer totals(HistoryReader& history, const HistoryRequest& request) {
    const auto found = history.ask<Totals>([&](HistoryStore& store, auto answer) {
        store.totals(lastOf(rangeOf(request), currentDate()).start, std::move(answer));
    });
    return {request.json ? json(found) : totalsText(found, rangeOf(request))};
}

HistoryAnswer application(HistoryReader& history, const HistoryRequest& request) {
    constexpr std::int64_t all = -1;
    const HistoryRange range = rangeOf(request);
    const Date now = currentDate();
    const auto known = applications(history, range, now, all);
    const Meant meant = meantApplication(known, request.application, range);
    if (!meant.application)
        return {.text = {}, .problem = meant.problem};
    ApplicationHistory found{.summary = *meant.application, .rows = {}};
    found.rows = history.ask<std::vector<AppRow>>([&](HistoryStore& store, auto answer) {
        store.appRows(found.summary.appKey, lastOf(range, now).start, std::move(answer));
    });
    return {request.json ? json(found) : applicationText(found, range, now, layoutNow())};
}

using Run = std::function<int(const HistoryRequest&)>;

/// A subcommand of "history" with "--json".
CLI::App* add(CLI::App& history, const std::string& name, const std::string& description,
              const std::shared_ptr<HistoryRequest>& request, int& status, const Run& run) {
    CLI::App* command = history.add_subcommand(name, description);
    command->add_flag("--json", request->json, "Print the records as JSON");
    command->callback([request, run, &status] { status = run(*request); });
    return command;
}

Run printing(const Presentation& present) {
    return [present](const HistoryRequest& request) {
        return printHistory(request.json, [&](HistoryReader& history) { return present(history, request); });
    };
}

} // namespace

void addRangeOption(CLI::App& command, std::string& range) {
    std::vector<std::string> ranges;
    for (const auto& [known, text] : rawTexts(EnumTag<HistoryRange>{}))
        ranges.emplace_back(text);
    command.add_option("--range", range, "How far back")
        ->type_name("RANGE")
        ->transform(CLI::IsMember(ranges, CLI::ignore_case))
        ->capture_default_str();
}

std::vector<SystemRow> rowsOf(HistoryReader& history, HistoryRange range, Date now) {
    const Period period = lastOf(range, now);
    return history.ask<std::vector<SystemRow>>(
        [&](HistoryStore& store, auto answer) { store.systemRows(period.start, period.end, std::move(answer)); });
}

Date currentDate() {
    return Date{std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count()};
}

void addHistoryCommand(CLI::App& app, int& status) {
    CLI::App* history = app.add_subcommand("history", "What \"ostrivanectl monitor\" has kept");
    history->require_subcommand(1);
    const auto request = std::make_shared<HistoryRequest>(); // one subcommand runs
    add(*history, "status", "Say where the history lies, what it holds and what is wrong with it", request, status,
        printStatus);
    CLI::App* drawn = add(*history, "rows", "Draw the machine's figures over time", request, status, printing(rows));
    drawn->add_flag("--table", request->withTable, "Print a table of means below");
    addRangeOption(*drawn, request->range);
    CLI::App* most =
        add(*history, "top", "List the applications that used most processor time", request, status, printing(top));
    addRangeOption(*most, request->range);
    addLimitOption(*most, request->limit);
    CLI::App* sums =
        add(*history, "totals", "Sum up what was read, written, received and sent", request, status, printing(totals));
    addRangeOption(*sums, request->range);
    CLI::App* one =
        add(*history, "app", "Draw the figures of one application over time", request, status, printing(application));
    one->add_option("KEY", request->application, "Its key, or its name where only one has it")->required();
    addRangeOption(*one, request->range);
    CLI::App* warned = add(*history, "alerts", "List the alerts, the newest first", request, status,
                           [](const HistoryRequest& wanted) { return printAlerts(wanted.limit, wanted.json); });
    addLimitOption(*warned, request->limit);
    add(*history, "sessions", "List the sessions, the newest first", request, status,
        [](const HistoryRequest& wanted) { return printSessions(wanted.json); });
    addHistoryExportCommand(*history, status);
    addHistoryClearCommand(*history, status);
}

} // namespace ostrivane::cli
