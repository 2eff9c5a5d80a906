#include "app/model/AppSettings.hpp"
#include "cli/AlertRulesText.hpp"
#include "cli/Commands.hpp"
#include "cli/Consent.hpp"
#include "cli/HistoryAnswer.hpp"
#include "cli/HistoryCommands.hpp"
#include "cli/JudgementText.hpp"
#include "cli/Output.hpp"
#include "cli/Session.hpp"
#include "core/judgement/AlertRuleChange.hpp"
#include "core/model/JSON.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ostrivane::cli {

namespace {

struct AlertsRequest {
    std::int64_t limit = defaultListLimit;
    bool json = false;
    bool isAgreedTo = false;
    std::string kind;
    AlertRuleChange change;
};

std::string rulesJSON(const std::vector<AlertRule>& rules) {
    return JSON::text(rules) + "\n";
}

int printRules(bool json) {
    const AppSettings settings(nativeKeyValueStore());
    const auto rules = effectiveRules(settings->alertRules);
    const Written written = writeOut(json ? rulesJSON(rules) : rulesText(rules, terminalWidth()));
    if (const auto problem = settings.defaults().problem()) {
        writeError(*problem);
        return failed;
    }
    return statusAfter(written);
}

/// Makes the rules what `change` says of each, and prints those that it is about.
int changeRules(const std::string& kind, const std::function<AlertRule(const AlertRule&)>& change) {
    const auto wanted = fromRawValue<AlertKind>(kind); // absent: all of them
    AppSettings settings(nativeKeyValueStore());
    std::vector<AlertRule> rules = effectiveRules(settings->alertRules);
    std::vector<AlertRule> concerned;
    for (AlertRule& rule : rules) {
        if (wanted && rule.kind != *wanted)
            continue;
        rule = change(rule);
        concerned.push_back(rule);
    }
    settings.set(&Preferences::alertRules, rules);
    if (const auto problem = settings.defaults().problem()) {
        writeError(*problem);
        return failed;
    }
    return statusAfter(writeOut(rulesText(concerned, terminalWidth())));
}

int setRule(const AlertsRequest& request) {
    if (request.change == AlertRuleChange{}) {
        writeError("alerts set: nothing to change; name a threshold, a window, a cooldown or a switch");
        return misused;
    }
    if (const auto wrong = problem(*fromRawValue<AlertKind>(request.kind), request.change)) {
        writeError(request.kind + ": " + *wrong);
        return misused;
    }
    return changeRules(request.kind, [&](const AlertRule& rule) { return changed(rule, request.change); });
}

int resetRules(const std::string& kind) {
    return changeRules(kind, [](const AlertRule& rule) {
        return *std::ranges::find(AlertRule::defaults, rule.kind, &AlertRule::kind);
    });
}

int clearAlerts(bool isAgreedTo) {
    if (!canDecide(isAgreedTo))
        return misused;
    if (!isAgreedTo && !isAgreed("Delete all alerts from the history? The rules stay as they are."))
        return statusAfter(writeOut("Nothing was deleted.\n"));
    return changeHistory([](HistoryReader& history) -> HistoryAnswer {
        history.order([](HistoryStore& store) { store.clearAlerts(); });
        return {"The alerts are deleted.\n", history.writeProblem()};
    });
}

void addKind(CLI::App& command, std::string& kind, bool isRequired) {
    std::vector<std::string> kinds;
    for (const auto& [known, text] : rawTexts(EnumTag<AlertKind>{}))
        kinds.emplace_back(text);
    command.add_option("KIND", kind, "The rule")
        ->required(isRequired)
        ->transform(CLI::IsMember(kinds, CLI::ignore_case));
}

/// A flag and its opposite.
void addSwitch(CLI::App& command, const std::string& on, const std::string& off, std::optional<bool>& choice,
               const std::string& description) {
    CLI::Option* first = command.add_flag_callback(
        on, [&choice] { choice = true; }, description);
    command
        .add_flag_callback(
            off, [&choice] { choice = false; }, "The opposite")
        ->excludes(first);
}

void addSetCommand(CLI::App& alerts, const std::shared_ptr<AlertsRequest>& request, int& status) {
    CLI::App* set = alerts.add_subcommand("set", "Change a rule");
    addKind(*set, request->kind, true);
    AlertRuleChange& change = request->change;
    const auto number = [&](const std::string& name, std::optional<double>& value, const std::string& description) {
        set->add_option(name, value, description)->check(finiteNumber());
    };
    number("--threshold", change.threshold, "What is too much, in the unit that \"alerts rules\" shows");
    number("--window", change.window, "Seconds that are looked at");
    number("--cooldown", change.cooldown, "Seconds of silence about the same after each alert");
    addSwitch(*set, "--enable", "--disable", change.enabled, "Let the rule fire");
    addSwitch(*set, "--notify", "--no-notify", change.notify, "Show its alerts on the desktop, too");
    set->callback([request, &status] { status = setRule(*request); });
}

} // namespace

int printAlerts(std::int64_t limit, bool json) {
    return printHistory(json, [&](HistoryReader& history) -> HistoryAnswer {
        const auto found = history.ask<std::vector<StoredAlert>>(
            [&](HistoryStore& store, auto answer) { store.alerts(limit, std::move(answer)); });
        return {json ? JSON::text(found) + "\n" : alertsText(found, terminalWidth())};
    });
}

void addLimitOption(CLI::App& command, std::int64_t& limit) {
    command.add_option("--limit", limit, "At most that many")
        ->type_name("N")
        ->check(positiveNumber())
        ->capture_default_str();
}

void addAlertsCommand(CLI::App& app, int& status) {
    auto request = std::make_shared<AlertsRequest>();
    CLI::App* alerts = app.add_subcommand("alerts", "List the alerts, the newest first; show and change their rules");
    alerts->require_subcommand(0, 1);
    addLimitOption(*alerts, request->limit);
    alerts->add_flag("--json", request->json, "Print the records as JSON");
    alerts->callback([request, alerts, &status] {
        if (alerts->get_subcommands().empty())
            status = printAlerts(request->limit, request->json);
    });
    CLI::App* rules = alerts->add_subcommand("rules", "Say when each kind of alert is due");
    rules->add_flag("--json", request->json, "Print the records as JSON");
    rules->callback([request, &status] { status = printRules(request->json); });
    addSetCommand(*alerts, request, status);
    CLI::App* reset = alerts->add_subcommand("reset", "Put a rule, or all of them, back to the defaults");
    addKind(*reset, request->kind, false);
    reset->callback([request, &status] { status = resetRules(request->kind); });
    CLI::App* clear = alerts->add_subcommand("clear", "Delete all alerts from the history");
    clear->add_flag("--yes", request->isAgreedTo, "Do not ask");
    clear->callback([request, &status] { status = clearAlerts(request->isAgreedTo); });
}

} // namespace ostrivane::cli
