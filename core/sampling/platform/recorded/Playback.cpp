#include "core/sampling/platform/recorded/Playback.hpp"

#include "core/model/Text.hpp"

#include <boost/json/serialize.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace ostrivane {

namespace {
constexpr std::size_t longestLine = std::size_t{64} << 20; // bytes; no machine has that much to say in one tick
}

Playback::Playback(const std::string& name) : path(name) {
    std::error_code unknown;
    // A pipe or a terminal could keep the reader waiting for ever.
    if (const auto status = std::filesystem::status(path, unknown); std::filesystem::exists(status) &&
                                                                    !std::filesystem::is_regular_file(status) &&
                                                                    !std::filesystem::is_directory(status)) {
        trouble = fmt::format("{}: this is no file", path);
        return;
    }
    errno = 0;
    auto opened = std::make_unique<std::ifstream>(path, std::ios::binary);
    // A folder opens, and fails at the first read.
    if (!*opened || opened->peek() == std::char_traits<char>::eof()) {
        const bool isEmpty = opened->is_open() && errno == 0;
        trouble = fmt::format("{}: {}", path, isEmpty ? "the file is empty" : std::generic_category().message(errno));
        return;
    }
    file = std::move(opened);
    start();
}

Playback::Playback(std::string name, std::unique_ptr<std::istream> content)
    : path(std::move(name)), file(std::move(content)) {
    start();
}

void Playback::start() {
    readHeader();
    if (!trouble)
        upcoming = readTick();
    if (!trouble && !upcoming)
        fail("the recording holds no tick");
}

double Playback::secondsToNext() const {
    return atLine > 0 && upcoming ? std::max(upcoming->at - at, 0.0) : 0;
}

Date Playback::advance() {
    if (!upcoming)
        return at;
    at = upcoming->at;
    atLine = upcoming->line;
    clockReadings = std::move(upcoming->clock);
    clockRead = 0;
    for (auto& [question, answer] : upcoming->answers)
        answers.insert_or_assign(question, std::move(answer));
    upcoming = readTick();
    return at;
}

Date Playback::clock() {
    if (clockReadings.empty())
        return at;
    const Date now = clockReadings[std::min(clockRead, clockReadings.size() - 1)];
    ++clockRead;
    return now;
}

std::optional<Playback::Line> Playback::readLine() {
    Line line;
    ++lineNumber;
    for (char byte = 0; file->get(byte);) {
        if (byte == '\n') {
            line.ended = true;
            return line;
        }
        if (line.text.size() == longestLine) {
            fail("the line is too long");
            return std::nullopt;
        }
        line.text += byte;
    }
    return line.text.empty() ? std::nullopt : std::optional(std::move(line));
}

void Playback::readHeader() {
    const auto line = readLine();
    if (!line)
        return trouble ? void() : fail("the line is empty");
    const auto json = JSON::parse(line->text);
    if (!json || !json->is_object())
        return fail("this is no recording");
    // The version is looked at first: what else stands in the header of another version is not known.
    const auto* format = json->get_object().if_contains("format");
    const auto* version = json->get_object().if_contains("version");
    if (!format || !version || JSON::read<std::string>(*format) != RecordingHeader::knownFormat)
        return fail("this is no recording");
    if (JSON::read<std::int64_t>(*version) != RecordingHeader::knownVersion) {
        constexpr std::size_t longestVersion = 40;
        return fail(fmt::format("version {} of the recording format is not known; this program reads version {}",
                                boost::json::serialize(*version).substr(0, longestVersion),
                                RecordingHeader::knownVersion));
    }
    if (auto header = JSON::read<RecordingHeader>(*json))
        head = *std::move(header);
    else
        fail("the line is damaged");
}

std::optional<Playback::Tick> Playback::readTick() {
    const auto line = readLine();
    if (!line)
        return std::nullopt;
    if (Text::trimmed(line->text).empty() && file->peek() == std::char_traits<char>::eof())
        return std::nullopt; // an editor's empty last line
    auto json = JSON::parse(line->text);
    const auto* began = json && json->is_object() ? json->get_object().if_contains("at") : nullptr;
    const auto time = began ? JSON::read<Date>(*began) : std::nullopt;
    if (!time) {
        if (!line->ended && !json)
            cutOff = true;
        else
            fail("the line is damaged");
        return std::nullopt;
    }
    Tick tick{.at = *time, .line = lineNumber, .clock = {}, .answers = std::move(json->get_object())};
    if (const auto* clock = tick.answers.if_contains("clock"))
        tick.clock = JSON::read<std::vector<Date>>(*clock).value_or(std::vector<Date>());
    tick.answers.erase("at");
    tick.answers.erase("clock");
    return tick;
}

void Playback::failAnswer(std::string_view question) {
    // The first fault is the one to tell of.
    if (!trouble)
        trouble = fmt::format("{}:{}: the answer to \"{}\" is damaged", path, atLine, question);
}

void Playback::fail(std::string_view what) {
    trouble = fmt::format("{}:{}: {}", path, lineNumber, what);
}

} // namespace ostrivane
