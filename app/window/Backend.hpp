#pragma once

#include "app/model/AppModel.hpp"
#include "app/model/SourceEngine.hpp"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ostrivane {

struct BackendOptions {
    EngineSource source{};
    std::string historyFolder{}; ///< of the history of a recording, for pictures; empty: a recording has none
    std::chrono::milliseconds lossPatience{5000}; ///< before a lost history is begun once more, or is claimed again
    std::function<void()> ended{};                ///< called on the main thread when a recording has no further tick
};

/// An `AppModel` over this machine or a recording, with the threads that engine and history work on. This machine's
/// history is kept by one program: where another one does already, this one works beside it, leaves samples and alerts
/// to it, and takes over when it ends. A recording's times are its own.
class Backend {
public:
    /// @param onMainThread  has work done where this object lives
    Backend(std::function<void(std::function<void()>)> onMainThread, BackendOptions options);
    ~Backend();
    Backend(const Backend&) = delete;
    Backend& operator=(const Backend&) = delete;

    /// What is wrong with the recording. With a problem from the start there is no model.
    std::optional<std::string> problem() const;

    AppModel& model();
    const PlatformWords& words() const;
    /// The wall clock; of a recording, when its latest tick began. For any thread.
    std::function<Date()> clock() const;

    /// Called on the main thread, at once and then when it changes: why the history is not kept as it should; absent
    /// when it is. A file that was lost is begun anew.
    void onHistoryProblem(std::function<void(std::optional<std::string>)> told);

    /// Which other program keeps the history now, as a sentence; absent where this one does.
    std::optional<std::string> otherKeeper() const;

    /// Called on the main thread when the system or a person asks the program to end, by a signal.
    void onQuitSignal(std::function<void()> quit);

    /// Writes what is finished and lets go of the history, within that time. Whether it was done.
    bool finish(std::chrono::milliseconds patience);

private:
    struct Parts;
    std::unique_ptr<Parts> parts;
};

} // namespace ostrivane
