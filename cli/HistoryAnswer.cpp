#include "cli/HistoryAnswer.hpp"

#include "cli/HistoryPlace.hpp"
#include "cli/Output.hpp"

namespace ostrivane::cli {

namespace {

int print(bool json, HistoryAccess access, const std::function<HistoryAnswer(HistoryReader&)>& present) {
    const auto place = historyPlace();
    if (!place)
        return failed;
    if (!place->exists && !place->problem && !json)
        return statusAfter(writeOut(noHistoryText(*place)));
    HistoryReader history(*place, access);
    const HistoryAnswer answer = present(history);
    const auto unread = history.problem(); // says more than that nothing was found
    if (unread || answer.problem) {
        writeError(unread ? *unread : *answer.problem);
        return failed;
    }
    return statusAfter(writeOut(answer.text));
}

} // namespace

int printHistory(bool json, const std::function<HistoryAnswer(HistoryReader&)>& present) {
    return print(json, HistoryAccess::readOnly, present);
}

int changeHistory(const std::function<HistoryAnswer(HistoryReader&)>& change) {
    return print(false, HistoryAccess::readWrite, change);
}

} // namespace ostrivane::cli
