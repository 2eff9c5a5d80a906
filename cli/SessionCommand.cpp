#include "cli/Commands.hpp"
#include "cli/Consent.hpp"
#include "cli/HistoryAnswer.hpp"
#include "cli/HistoryCommands.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "cli/SessionCommands.hpp"
#include "cli/SessionText.hpp"
#include "core/judgement/SessionSummary.hpp"
#include "core/judgement/SessionSummaryJSON.hpp"
#include "core/model/JSON.hpp"
#include "core/model/Text.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace ostrivane::cli {

namespace {

struct SessionRequest {
    std::int64_t id = 0;
    bool json = false;
    bool isAgreedTo = false;
};

std::vector<StoredSession> sessionsOf(HistoryReader& history) {
    return history.ask<std::vector<StoredSession>>(
        [](HistoryStore& store, auto answer) { store.sessions(std::move(answer)); });
}

std::optional<StoredSession> sessionWith(HistoryReader& history, std::int64_t id) {
    const auto all = sessionsOf(history);
    const auto found = std::ranges::find(all, id, &StoredSession::id);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

HistoryAnswer noSuchSession(std::int64_t id) {
    return {{}, fmt::format("{}: no such session; \"ostrivanectl session list\" shows their numbers", id)};
}

/// Read once and written again: what lies in the file need not be a summary.
std::string summaryJSON(const StoredSession& session) {
    const auto summary = readSessionSummary(session.summaryJSON.value_or(""));
    return summary ? sessionSummaryJSON(*summary) : "null";
}

int show(const SessionRequest& request) {
    return printHistory(request.json, [&](HistoryReader& history) -> HistoryAnswer {
        const auto session = sessionWith(history, request.id);
        if (!session)
            return noSuchSession(request.id);
        if (request.json)
            return {summaryJSON(*session) + "\n"};
        return {storedSessionText(*session, terminalWidth())};
    });
}

int remove(const SessionRequest& request) {
    if (!canDecide(request.isAgreedTo))
        return misused;
    return changeHistory([&](HistoryReader& history) -> HistoryAnswer {
        const auto session = sessionWith(history, request.id);
        if (!session)
            return noSuchSession(request.id);
        const std::string question =
            fmt::format("Delete the session \"{}\"? Its summary is removed for good.", Text::visible(session->name));
        if (!request.isAgreedTo && !isAgreed(question))
            return {"Nothing was deleted.\n"};
        history.order([&](HistoryStore& store) { store.deleteSession(request.id); });
        return {"The session is deleted.\n", history.writeProblem()};
    });
}

void addID(CLI::App& command, std::int64_t& id) {
    command.add_option("ID", id, "Its number in \"session list\"")->required()->check(positiveNumber());
}

} // namespace

int printSessions(bool json) {
    return printHistory(json, [&](HistoryReader& history) -> HistoryAnswer {
        const auto found = sessionsOf(history);
        return {json ? JSON::text(found) + "\n" : sessionsText(found, terminalWidth())};
    });
}

void addSessionCommand(CLI::App& app, const std::vector<std::string>& command, int& status) {
    auto request = std::make_shared<SessionRequest>();
    CLI::App* session = app.add_subcommand("session", "Record what a command costs; show what was recorded");
    session->require_subcommand(1);
    addSessionRunCommand(*session, command, status);
    CLI::App* list = session->add_subcommand("list", "List the sessions, the newest first");
    list->add_flag("--json", request->json, "Print the records as JSON");
    list->callback([request, &status] { status = printSessions(request->json); });
    CLI::App* shown = session->add_subcommand("show", "Print the summary of a session");
    addID(*shown, request->id);
    shown->add_flag("--json", request->json, "Print the summary as JSON; \"null\" where there is none");
    shown->callback([request, &status] { status = show(*request); });
    CLI::App* removed = session->add_subcommand("delete", "Delete a session from the history");
    addID(*removed, request->id);
    removed->add_flag("--yes", request->isAgreedTo, "Do not ask");
    removed->callback([request, &status] { status = remove(*request); });
}

} // namespace ostrivane::cli
