#pragma once

#include "core/model/Date.hpp"
#include "core/model/JSON.hpp"
#include "core/sampling/platform/recorded/RecordingHeader.hpp"

#include <boost/json/object.hpp>

#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// Reads a recording tick by tick and answers for the tick at which it stands. A file that was cut off in the middle of
/// its last line is used as far as it is whole. Whatever else is wrong ends the playback with a `problem`.
class Playback {
public:
    /// Reads the header and looks at the first tick. With a `problem` from the start, nothing else may be asked.
    explicit Playback(const std::string& file);

    /// The same for what `content` holds; `name` stands for the file in a problem.
    Playback(std::string name, std::unique_ptr<std::istream> content);

    const RecordingHeader& header() const { return head; }

    /// What is wrong with the file, with its name and the line; absent while all is well.
    const std::optional<std::string>& problem() const { return trouble; }

    /// The last line was cut off and left out. Known once the ticks before it have been looked at.
    bool wasCutOff() const { return cutOff; }

    /// Whether a further tick stands ready.
    bool hasNext() const { return upcoming && !trouble; }

    /// Seconds from the tick at which it stands to the next one; 0 before the first, when the clock was set back
    /// between them, and at the end.
    double secondsToNext() const;

    /// Moves on to the next tick and answers its time. At the end it stays where it is.
    Date advance();

    /// The next reading of the clock within this tick; the last one again when there are no more.
    Date clock();

    /// What the machine answered to `question` in this tick, or in the last one in which it was asked. Absent when it
    /// was never asked, and when it was not answered. An answer of the wrong kind is a `problem`.
    template <class Answer>
    std::optional<Answer> answer(std::string_view question) {
        const boost::json::value* known = answers.if_contains({question.data(), question.size()});
        if (!known || known->is_null())
            return std::nullopt;
        auto answer = JSON::read<Answer>(*known);
        if (!answer)
            failAnswer(question);
        return answer;
    }

    /// The question will not be put again: its last answer need not be kept.
    void forget(std::string_view question) { answers.erase({question.data(), question.size()}); }

private:
    struct Tick {
        Date at;
        std::int64_t line = 0;
        std::vector<Date> clock;
        boost::json::object answers;
    };

    struct Line {
        std::string text;
        bool ended = false; ///< by a line feed
    };

    void start();
    std::optional<Line> readLine();
    void readHeader();
    std::optional<Tick> readTick();
    void fail(std::string_view what);
    void failAnswer(std::string_view question);

    std::string path;
    std::unique_ptr<std::istream> file;
    std::int64_t lineNumber = 0;
    RecordingHeader head;
    std::optional<std::string> trouble;
    bool cutOff = false;

    Date at;
    std::int64_t atLine = 0; ///< where this tick stands; 0 before the first
    std::vector<Date> clockReadings;
    std::size_t clockRead = 0;
    boost::json::object answers; ///< the last answer to every question
    std::optional<Tick> upcoming;
};

} // namespace ostrivane
