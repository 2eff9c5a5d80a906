#include "app/model/SettingsText.hpp"

#include "core/model/Text.hpp"

#include <algorithm>
#include <optional>
#include <vector>

namespace ostrivane::SettingsText {

namespace {

constexpr std::string_view section = "[General]";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// A line of the section that is ours.
struct Line {
    std::size_t start = 0;
    std::size_t end = 0; ///< behind its line feed
    std::string_view key;
    std::size_t valueAt = 0; ///< where the value begins, and may be empty
    std::string_view value;
};

struct Layout {
    std::vector<Line> lines;
    std::optional<std::size_t> end; ///< of the last section that is ours: behind its last line with anything in it
};

bool isComment(std::string_view line) {
    return line.starts_with('#') || line.starts_with(';');
}

Layout layoutOf(std::string_view text) {
    Layout layout;
    bool inSection = true, isNamed = false;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t feed = text.find('\n', start);
        const std::size_t end = feed == std::string_view::npos ? text.size() : feed + 1;
        std::string_view line = text.substr(start, end - start);
        if (line.starts_with(byteOrderMark)) // on any line: the one above may go
            line.remove_prefix(byteOrderMark.size());
        line = Text::trimmed(line);
        if (line.starts_with('[') && line.ends_with(']')) {
            inSection = isNamed = line == section;
        } else if (const std::size_t equals = line.find('=');
                   inSection && !isComment(line) && equals != std::string_view::npos) {
            const auto value = Text::trimmed(line.substr(equals + 1));
            const auto* const from = value.empty() ? line.data() + equals + 1 : value.data();
            layout.lines.push_back({start, end, Text::trimmed(line.substr(0, equals)),
                                    static_cast<std::size_t>(from - text.data()), value});
        }
        if (inSection && isNamed && !line.empty())
            layout.end = end;
        start = end;
    }
    return layout;
}

std::string oneLine(std::string_view value) {
    std::string line(value);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return std::string(Text::trimmed(line));
}

/// As the text itself ends its lines.
std::string_view lineEnd(std::string_view text) {
    const std::size_t feed = text.find('\n');
    return feed != std::string_view::npos && feed > 0 && text[feed - 1] == '\r' ? "\r\n" : "\n";
}

} // namespace

std::map<std::string_view, std::string_view> values(std::string_view text) {
    std::map<std::string_view, std::string_view> found;
    for (const Line& line : layoutOf(text).lines)
        if (isKey(line.key))
            found.insert_or_assign(line.key, line.value);
    return found;
}

bool isKey(std::string_view key) {
    return !key.empty() && Text::trimmed(key) == key && !isComment(key) && !key.starts_with('[') &&
           !key.starts_with(byteOrderMark) &&
           std::ranges::none_of(key, [](char c) { return c == '=' || static_cast<unsigned char>(c) < ' '; });
}

std::string replaced(std::string_view text, std::string_view key, std::string_view value) {
    std::string out(text);
    if (!isKey(key))
        return out;
    const Layout layout = layoutOf(text);
    const auto line =
        std::find_if(layout.lines.rbegin(), layout.lines.rend(), [&](const Line& other) { return other.key == key; });
    if (line != layout.lines.rend())
        return out.replace(line->valueAt, line->value.size(), oneLine(value));
    const std::string_view feed = lineEnd(text);
    std::size_t at = layout.end.value_or(out.size());
    std::string added;
    if (at > 0 && out[at - 1] != '\n')
        added += feed;
    if (!layout.end)
        added.append(section).append(feed);
    added.append(key).append("=").append(oneLine(value)).append(feed);
    return out.insert(at, added);
}

std::string removed(std::string_view text, std::string_view key) {
    std::string out;
    std::size_t from = 0;
    for (const Line& line : layoutOf(text).lines) {
        if (line.key != key || !isKey(key))
            continue;
        out += text.substr(from, line.start - from);
        from = line.end;
    }
    return out += text.substr(from);
}

} // namespace ostrivane::SettingsText
