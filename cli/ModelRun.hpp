#pragma once

#include "app/model/AppModel.hpp"
#include "cli/Session.hpp"
#include "core/history/HistoryStore.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace boost::asio {
class any_io_executor;
class io_context;
} // namespace boost::asio

namespace ostrivane::cli {

struct ModelRunOptions {
    HistoryAccess history = HistoryAccess::readOnly;
    bool engineHasThread = false;  ///< so that a long tick holds up nobody
    std::function<void()> ended{}; ///< called on the model's thread when a recording has no further tick
};

/// An `AppModel` over a command's source of figures, beside whoever keeps the history. The model and all who watch it
/// live on the caller's thread, which `run` lends them; the history has a thread of its own, since a disk may be slow.
/// A recording has no history: what is kept here is of another machine.
class ModelRun {
public:
    ModelRun(const Source& source, ModelRunOptions options);
    ~ModelRun();
    ModelRun(const ModelRun&) = delete;
    ModelRun& operator=(const ModelRun&) = delete;

    /// What is wrong with the recording. With a problem from the start there is no model.
    std::optional<std::string> problem() const;

    /// What the session says of the source; its engine belongs to the model.
    const Session& session() const;
    AppModel& model();

    /// Asks for every reading, as somebody does who looks at all of it.
    void demandEverything();

    /// Calls `done` once the history has answered all that it was asked so far.
    void afterHistory(std::function<void()> done);

    /// Works until `stop`.
    void run();
    void stop();

    boost::asio::io_context& context();
    /// Of the engine: the model's own thread, or another.
    boost::asio::any_io_executor engineExecutor();

private:
    struct Parts;
    std::unique_ptr<Parts> parts;
};

} // namespace ostrivane::cli
