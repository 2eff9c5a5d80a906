#pragma once

#include "core/model/Date.hpp"
#include "core/model/JSON.hpp"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrivane {

/// The line of the tick under way: what the clock and the machine answered since it began.
class TickNotes {
public:
    void begin(Date now) {
        at = now;
        clock.clear();
        answers.clear();
    }

    void noteClock(Date now) { clock.push_back(now); }

    /// Notes the answer to a question and hands it on.
    template <class Answer>
    Answer keep(std::string_view question, Answer answer) {
        answers += ',';
        JSON::writeText(answers, question);
        answers += ':';
        JSON::write(answers, answer);
        return answer;
    }

    /// The tick as one line, without its line feed.
    std::string line() const { return "{\"at\":" + JSON::text(at) + ",\"clock\":" + JSON::text(clock) + answers + "}"; }

private:
    Date at;
    std::vector<Date> clock;
    std::string answers;
};

} // namespace ostrivane
