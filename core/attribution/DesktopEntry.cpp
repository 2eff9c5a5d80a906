#include "core/attribution/DesktopEntry.hpp"

#include "core/attribution/KeyFile.hpp"
#include "core/attribution/PathText.hpp"

namespace ostrivane {

namespace {

using Words = std::vector<std::string>;

/// The words of a command line. Quotes may also stand within a word, and single ones quote too: the entries that some
/// programs write for theirs are not by the letter of the format, and desktops start them all the same.
std::optional<Words> wordsOf(std::string_view exec) {
    Words words;
    bool inWord = false;
    char quote = '\0';
    for (std::size_t next = 0; next < exec.size(); ++next) {
        const char c = exec[next];
        const char after = next + 1 < exec.size() ? exec[next + 1] : '\0';
        if (c == '\0')
            return std::nullopt; // would end the path for the system, and not for us
        if (quote == '\0' && (c == ' ' || c == '\t' || c == '\n')) {
            inWord = false;
            continue;
        }
        if (!inWord)
            words.emplace_back();
        inWord = true;
        const bool escapes =
            c == '\\' && after != '\0' &&
            (quote == '\0' || (quote == '"' && std::string_view("\"`$\\").find(after) != std::string_view::npos));
        if (escapes)
            words.back() += exec[++next];
        else if (c == quote)
            quote = '\0';
        else if (quote == '\0' && (c == '"' || c == '\''))
            quote = c;
        else
            words.back() += c;
    }
    return quote == '\0' ? std::optional(std::move(words)) : std::nullopt;
}

bool isFieldCode(std::string_view word) {
    return word.size() == 2 && word[0] == '%' && word[1] != '%';
}

bool isSetting(std::string_view word) {
    const std::size_t equals = word.find('=');
    return equals != std::string_view::npos && equals > 0 && word.find('/') > equals;
}

/// How many words "env" takes from `words[at]` on, which is one of its options.
std::size_t optionLength(std::string_view option) {
    return option == "-u" || option == "-C" || option == "--unset" || option == "--chdir" ? 2 : 1;
}

/// The position of the program's own word.
std::size_t programAt(const Words& words) {
    std::size_t at = 0;
    bool ofEnv = false;
    while (at < words.size()) {
        const std::string& word = words[at];
        if (ofEnv && word.starts_with('-'))
            at += optionLength(word);
        else if (isSetting(word) || isFieldCode(word))
            ++at;
        else if (PathText::lastComponent(word) == "env" && !ofEnv)
            ++at, ofEnv = true;
        else
            break;
    }
    return at;
}

std::string localized(const KeyFile::Group& group, std::string_view key, const std::vector<std::string>& localeNames) {
    for (const std::string& locale : localeNames) {
        const std::string_view found = KeyFile::value(group, std::string(key) + "[" + locale + "]");
        if (!found.empty())
            return KeyFile::text(found);
    }
    return KeyFile::text(KeyFile::value(group, key));
}

} // namespace

std::optional<DesktopCommand> DesktopCommand::parse(std::string_view exec) {
    const auto words = wordsOf(exec);
    const std::size_t at = words ? programAt(*words) : 0;
    if (!words || at >= words->size() || (*words)[at].empty())
        return std::nullopt;
    DesktopCommand command{.program = (*words)[at], .arguments = 0};
    for (std::size_t next = at + 1; next < words->size(); ++next)
        command.arguments += isFieldCode((*words)[next]) ? 0 : 1;
    return command;
}

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text, const std::vector<std::string>& localeNames) {
    const auto group = KeyFile::group(text, "Desktop Entry");
    if (!group)
        return std::nullopt;
    const auto value = [&](std::string_view key) { return KeyFile::value(*group, key); };
    return DesktopEntry{.name = localized(*group, "Name", localeNames),
                        .icon = localized(*group, "Icon", localeNames),
                        .exec = KeyFile::text(value("Exec")),
                        .tryExec = KeyFile::text(value("TryExec")),
                        .onlyShowIn = KeyFile::list(value("OnlyShowIn")),
                        .notShowIn = KeyFile::list(value("NotShowIn")),
                        .isApplication = value("Type") == "Application",
                        .noDisplay = KeyFile::isTrue(value("NoDisplay")),
                        .hidden = KeyFile::isTrue(value("Hidden")),
                        .terminal = KeyFile::isTrue(value("Terminal"))};
}

std::vector<std::string> DesktopEntry::localeNames(const std::vector<std::string>& locales) {
    std::vector<std::string> names;
    for (const std::string_view locale : locales) {
        const std::size_t at = locale.find('@');
        const std::string modifier(at == std::string_view::npos ? std::string_view() : locale.substr(at));
        const std::string country(locale.substr(0, locale.find_first_of(".@")));
        const std::string language = country.substr(0, country.find('_'));
        for (const std::string& name : {country + modifier, country, language + modifier, language})
            if (!name.empty() && (names.empty() || names.back() != name))
                names.push_back(name);
    }
    return names;
}

} // namespace ostrivane
