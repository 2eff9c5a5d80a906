#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

using GDBusMethodInvocation = struct _GDBusMethodInvocation; // NOLINT(bugprone-reserved-identifier): GIO's own name
using GMainLoop = struct _GMainLoop;                         // NOLINT(bugprone-reserved-identifier)
using GVariant = struct _GVariant;                           // NOLINT(bugprone-reserved-identifier)

namespace ostrivane {

/// A server of org.freedesktop.Notifications that notes what it is told.
class FakeDesktop {
public:
    struct Notification {
        std::string program, icon, summary, body, desktopEntry;
        std::uint32_t replaces = 0;
        int urgency = -1;
        std::size_t actions = 0;
        std::int32_t time = 0;
    };

    /// `firstNumber`: of the notifications; each that replaces none has the next one.
    FakeDesktop(const std::string& address, std::vector<std::string> capabilities, std::uint32_t firstNumber = 1);
    ~FakeDesktop();
    FakeDesktop(const FakeDesktop&) = delete;
    FakeDesktop& operator=(const FakeDesktop&) = delete;

    /// The first `count` that it was told, once they are there; fewer when they do not come.
    std::vector<Notification> told(std::size_t count);
    /// The one with that summary, once it is there; an empty one when it does not come.
    Notification told(const std::string& summary);

    /// Answers no `Notify` until told to.
    void holdAnswers();
    void answer();

    /// How often it was asked what it can do.
    int questions();

private:
    void run(const std::string& address, std::promise<bool> isReady);
    void called(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);
    void answer(const std::lock_guard<std::mutex>& lock);

    const std::vector<std::string> capabilities;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Notification> notifications;
    struct Held {
        GDBusMethodInvocation* invocation;
        std::uint32_t number;
    };
    std::vector<Held> held;
    bool isHolding = false;
    int asked = 0;
    std::uint32_t nextNumber;
    GMainLoop* loop;
    std::thread thread; ///< last: it uses all of the above
};

} // namespace ostrivane
