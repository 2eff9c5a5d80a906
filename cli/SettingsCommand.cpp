#include "app/model/AppSettings.hpp"
#include "cli/Commands.hpp"
#include "cli/Consent.hpp"
#include "cli/Output.hpp"
#include "cli/SettingInput.hpp"
#include "cli/SettingsList.hpp"
#include "core/judgement/AlertRuleChange.hpp"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <functional>
#include <memory>

namespace ostrivane::cli {

namespace {

struct Request {
    std::string key;
    std::string value;
    bool json = false;
    bool isAgreedTo = false;
};

/// The one with that key; says on standard error that there is none.
std::optional<SettingRow> rowOf(const AppSettings& settings, const std::string& key) {
    std::vector<std::string> keys;
    for (SettingRow& row : settingRows(*settings)) {
        if (row.key == key)
            return std::move(row);
        keys.push_back(std::move(row.key));
    }
    writeError(fmt::format("there is no setting \"{}\"; there are: {}", key, fmt::join(keys, ", ")));
    return std::nullopt;
}

/// What a command answers that has read or changed the settings and then written to standard output.
int statusOf(const AppSettings& settings, Written written) {
    if (const auto problem = settings.defaults().problem()) {
        writeError(*problem);
        return failed;
    }
    return statusAfter(written);
}

int list(AppSettings& settings, const Request& request) {
    const auto rows = settingRows(*settings);
    return statusOf(
        settings,
        writeOut(request.json ? settingsJSON(rows) : settingsText(rows, settings.defaults().place(), terminalWidth())));
}

/// Lists in JSON too, as "set" takes them.
std::string plain(const SettingRow& row) {
    return row.json.starts_with('[') ? row.json : row.value;
}

int get(AppSettings& settings, const Request& request) {
    const auto row = rowOf(settings, request.key);
    if (!row)
        return misused;
    return statusOf(settings, writeOut((request.json ? row->json : plain(*row)) + "\n"));
}

/// Tells what stands there now, unless it could not be kept.
int tell(const AppSettings& settings, const std::string& key) {
    if (settings.defaults().problem())
        return statusOf(settings, Written::whole);
    const auto row = rowOf(settings, key);
    return row ? statusAfter(writeOut(fmt::format("{}: {}\n", key, row->value))) : misused;
}

/// Whether one of the rules could never fire.
template <class Value>
bool isUnfit(const Value& value) {
    if constexpr (std::is_same_v<Value, std::vector<AlertRule>>)
        for (const AlertRule& rule : value)
            if (problem(rule.kind, {.threshold = rule.threshold, .window = rule.window, .cooldown = rule.cooldown}))
                return true;
    return false;
}

int set(AppSettings& settings, const Request& request) {
    const auto row = rowOf(settings, request.key);
    if (!row)
        return misused;
    bool isOffered = false;
    boost::mp11::mp_for_each<JSON::MembersOf<Preferences>>([&](auto member) {
        using Value = std::remove_cvref_t<decltype((*settings).*member.pointer)>;
        if (request.key != member.name)
            return;
        auto value = offeredValue<Value>(request.key, request.value);
        if (value && !isUnfit(*value)) {
            isOffered = true;
            settings.set(member.pointer, *std::move(value));
        }
    });
    if (isOffered)
        return tell(settings, request.key);
    writeError(fmt::format("{} takes {}, not \"{}\"{}", request.key, row->offered, request.value,
                           row->json.starts_with('[') ? "; \"get\" prints one to begin with" : ""));
    return misused;
}

int resetEverything(AppSettings& settings, bool isAgreedTo) {
    if (!canDecide(isAgreedTo))
        return misused;
    if (!isAgreedTo &&
        !isAgreed(fmt::format("Set everything in {} back to its default?", Text::visible(settings.defaults().place()))))
        return statusAfter(writeOut("Nothing was changed.\n"));
    settings.resetAll();
    if (settings.defaults().problem())
        return statusOf(settings, Written::whole);
    return statusAfter(writeOut("All settings are at their defaults.\n"));
}

int reset(AppSettings& settings, const Request& request) {
    if (request.key.empty())
        return resetEverything(settings, request.isAgreedTo);
    if (!rowOf(settings, request.key))
        return misused;
    settings.defaults().remove(request.key);
    settings.reload();
    return tell(settings, request.key);
}

using Run = std::function<int(AppSettings&, const Request&)>;

CLI::App* add(CLI::App& settings, const std::string& name, const std::string& description,
              const std::shared_ptr<Request>& request, int& status, const Run& run) {
    CLI::App* command = settings.add_subcommand(name, description);
    command->callback([request, run, &status] {
        AppSettings own(nativeKeyValueStore());
        status = run(own, *request);
    });
    return command;
}

void addJSON(CLI::App& command, Request& request, const std::string& description) {
    command.add_flag("--json", request.json, description);
}

CLI::Option* addKey(CLI::App& command, Request& request) {
    return command.add_option("KEY", request.key, "The setting's name in the list");
}

} // namespace

void addSettingsCommand(CLI::App& app, int& status) {
    CLI::App* settings = app.add_subcommand("settings", "What you have chosen, for every face of the program");
    settings->require_subcommand(1);
    const auto request = std::make_shared<Request>(); // one subcommand runs
    addJSON(*add(*settings, "list", "List the settings with what each does and takes", request, status, list), *request,
            "Print them as JSON");
    CLI::App* shown = add(*settings, "get", "Print one setting", request, status, get);
    addKey(*shown, *request)->required();
    addJSON(*shown, *request, "Print it as JSON");
    CLI::App* changed = add(*settings, "set", "Change one setting", request, status, set);
    addKey(*changed, *request)->required();
    changed->add_option("VALUE", request->value, "What to set it to; lists in JSON")->required();
    CLI::App* undone = add(*settings, "reset", "Set one setting, or all, back to the default", request, status, reset);
    addKey(*undone, *request);
    undone->add_flag("--yes", request->isAgreedTo, "Do not ask before all are set back");
}

} // namespace ostrivane::cli
