#include "cli/HistoryReader.hpp"

#include "app/model/AppSettings.hpp"
#include "cli/HistoryPlace.hpp"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/io_context.hpp>

namespace ostrivane::cli {

HistoryReader::HistoryReader(const HistoryPlace& place, HistoryAccess access)
    : placeProblem(place.problem), context(std::make_unique<boost::asio::io_context>(1)) {
    if (!place.exists || place.problem)
        return;
    store = std::make_unique<HistoryStore>(context->get_executor(), place.file, HistoryOptions{access, {}});
    store->setRetention(AppSettings(nativeKeyValueStore())->retentionDays);
}

HistoryReader::~HistoryReader() = default;

void HistoryReader::order(const std::function<void(HistoryStore&)>& deed) {
    if (!store)
        return;
    deed(*store);
    work();
}

std::optional<HistoryStatus> HistoryReader::status() {
    if (!store)
        return std::nullopt;
    return ask<HistoryStatus>([](HistoryStore& history, auto answer) { history.status(std::move(answer)); });
}

std::optional<std::string> HistoryReader::problem() {
    if (!store)
        return placeProblem;
    return ask<std::optional<std::string>>(
        [](HistoryStore& history, auto answer) { history.readProblem(std::move(answer)); });
}

std::optional<std::string> HistoryReader::writeProblem() {
    return ask<std::optional<std::string>>(
        [](HistoryStore& history, auto answer) { history.problem(std::move(answer)); });
}

void HistoryReader::work() {
    context->restart();
    context->run();
}

} // namespace ostrivane::cli
