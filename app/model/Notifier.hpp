#pragma once

#include <memory>

namespace ostrivane {

struct Alert;

/// Shows alerts on the desktop. Every call returns at once and fails silently: an alert is in the list and in the
/// history whatever the desktop does.
class Notifier {
public:
    virtual ~Notifier() = default;

    /// Shows an alert, in the place of one of the same kind and subject where the desktop can do that.
    virtual void post(const Alert& alert) = 0;

    /// Asks the user, where the desktop wants to be asked.
    virtual void requestAuthorization() = 0;
};

/// The desktop's own; one that does nothing where there is none, and where the program may not reach it.
std::unique_ptr<Notifier> nativeNotifier();

/// Shows nothing.
class SilentNotifier final : public Notifier {
public:
    void post(const Alert& /*alert*/) override {}
    void requestAuthorization() override {}
};

} // namespace ostrivane
