#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace ostrivane {

/// Sees to it that only one process writes a history: a locked file beside the database, "history.lock". The kernel
/// drops the lock when the process ends, however it ends; programs that the process starts do not inherit it. The text
/// of the file tells others who holds it.
class HistoryLock {
public:
    /// Who keeps the history. Texts are what the file says: valid UTF-8 of one line, and no more to be trusted.
    struct Holder {
        std::int32_t pid = 0; ///< 0 when the file does not tell
        std::string name;
        std::string note; ///< what stands in its way now; empty when nothing does

        friend bool operator==(const Holder&, const Holder&) = default;
    };

    /// Why the lock could not be asked for, in the user's words.
    using Problem = std::string;

    /// Takes the lock of the history in `folder`, which must exist, for the program called `name`.
    static std::variant<HistoryLock, Holder, Problem> take(const std::string& folder, const std::string& name);

    /// Who holds the lock now; absent when nobody does, whatever a file left behind says. Changes nothing, and keeps no
    /// writer out.
    static std::optional<Holder> holder(const std::string& folder);

    HistoryLock(HistoryLock&& other) noexcept;
    HistoryLock& operator=(HistoryLock&&) = delete;
    ~HistoryLock();

    /// Tells readers what stands in the way of keeping the history; an empty text takes it back.
    void note(const std::string& text) const;

private:
    HistoryLock(int descriptor, std::string name);

    int descriptor; ///< the lock lives as long as this is open; -1 when it was handed over
    std::string name;
};

} // namespace ostrivane
