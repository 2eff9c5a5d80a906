#include "core/attribution/KeyFile.hpp"

#include "core/model/Text.hpp"

namespace ostrivane::KeyFile {

namespace {

constexpr std::size_t largestText = std::size_t(1) << 20; // bytes

std::string unescaped(std::string_view value) {
    std::string out;
    out.reserve(value.size());
    for (std::size_t next = 0; next < value.size(); ++next) {
        const char c = value[next];
        const char code = c == '\\' && next + 1 < value.size() ? value[next + 1] : '\0';
        constexpr std::string_view codes = "sntr\\", meanings = " \n\t\r\\";
        const std::size_t known = code == '\0' ? std::string_view::npos : codes.find(code);
        if (known == std::string_view::npos) {
            out += c;
            continue;
        }
        out += meanings[known];
        ++next;
    }
    return out;
}

} // namespace

std::optional<Group> group(std::string_view text, std::string_view name) {
    if (text.size() > largestText)
        return std::nullopt;
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    std::optional<Group> found;
    bool inGroup = false;
    for (const std::string_view raw : Text::lines(text)) {
        const std::string_view line = Text::trimmed(raw);
        if (line.starts_with('[') && line.ends_with(']')) {
            inGroup = line.substr(1, line.size() - 2) == name;
            if (inGroup && !found)
                found.emplace();
            continue;
        }
        const std::size_t equals = line.find('=');
        if (inGroup && !line.starts_with('#') && equals != std::string_view::npos && equals > 0)
            found->emplace_back(Text::trimmed(line.substr(0, equals)), Text::trimmed(line.substr(equals + 1)));
    }
    return found;
}

std::string_view value(const Group& group, std::string_view key) {
    for (auto entry = group.rbegin(); entry != group.rend(); ++entry)
        if (entry->first == key)
            return entry->second;
    return {};
}

std::string text(std::string_view value) {
    return Text::repaired(unescaped(value));
}

std::vector<std::string> list(std::string_view value) {
    std::vector<std::string> items(1);
    for (std::size_t next = 0; next < value.size(); ++next) {
        if (value[next] == '\\' && next + 1 < value.size()) {
            const char escaped = value[++next];
            items.back() += escaped == ';' ? std::string(";") : std::string{'\\', escaped};
        } else if (value[next] == ';') {
            items.emplace_back();
        } else {
            items.back() += value[next];
        }
    }
    std::erase(items, std::string()); // the one behind the last ";"
    for (std::string& item : items)
        item = text(item);
    return items;
}

bool isTrue(std::string_view value) {
    return value == "true" || value == "1";
}

} // namespace ostrivane::KeyFile
