#pragma once

#include "app/model/Notifier.hpp"
#include "app/model/SessionBusAddress.hpp"

#include <chrono>
#include <cstddef>
#include <memory>

namespace ostrivane {

/// Shows alerts by org.freedesktop.Notifications. A thread of its own talks to the bus; neither is there before the
/// first alert.
class DesktopNotifier final : public Notifier {
public:
    static constexpr std::size_t mostWaiting = 32; ///< alerts; the oldest go

    /// `limit`: for each call to the bus.
    explicit DesktopNotifier(SessionBusVariables variables, std::chrono::milliseconds limit = std::chrono::seconds(2));
    /// What waits is not shown any more.
    ~DesktopNotifier() override;

    void post(const Alert& alert) override;
    /// This desktop asks nobody.
    void requestAuthorization() override {}

private:
    class Courier;

    const SessionBusVariables variables;
    const std::chrono::milliseconds limit;
    std::unique_ptr<Courier> courier;
};

} // namespace ostrivane
