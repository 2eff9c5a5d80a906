#include "app/model/platform/linux/DesktopNotifier.hpp"

#include "app/model/DesktopEntry.hpp"
#include "app/model/NotificationServer.hpp"
#include "app/model/platform/linux/BusConnection.hpp"
#include "core/judgement/Alert.hpp"

#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

namespace ostrivane {

namespace {

constexpr const char* programName = "Ostrivane";
constexpr const char* wellKnownName = "org.freedesktop.Notifications";

BusConnection::Method method(const char* destination, const char* name) {
    return {
        .destination = destination, .path = "/org/freedesktop/Notifications", .interface = wellKnownName, .name = name};
}

bool hasMarkup(GVariant* reply) {
    const GIOHandle<GVariant> capabilities(g_variant_get_child_value(reply, 0));
    for (gsize i = 0; i < g_variant_n_children(capabilities.get()); ++i) {
        const char* capability = nullptr;
        g_variant_get_child(capabilities.get(), i, "&s", &capability);
        if (capability == std::string_view("body-markup"))
            return true;
    }
    return false;
}

GVariant* argumentsOf(const DesktopNotification& notification) {
    GVariantBuilder actions;
    g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&hints, "{sv}", "desktop-entry", g_variant_new_string(desktopEntry));
    g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(notification.urgency));
    const char* icon = ""; // the entry names it
    const gint32 timeLeftToServer = -1;
    return g_variant_new("(susssasa{sv}i)", programName, notification.replaces, icon, notification.summary.c_str(),
                         notification.body.c_str(), &actions, &hints, timeLeftToServer);
}

/// The way from an alert to the server, for one thread.
class Delivery {
public:
    Delivery(const SessionBusVariables& environment, std::chrono::milliseconds longest, GCancellable* canceller)
        : variables(environment), limit(longest), cancel(canceller) {}

    void deliver(const Alert& alert) {
        if (!connect() || !findServer())
            return;
        const auto reply = connection->call(method(server->uniqueName().c_str(), "Notify"),
                                            argumentsOf(server->notificationOf(alert)), "(u)");
        if (!reply)
            return;
        guint32 number = 0;
        g_variant_get(reply->values.get(), "(u)", &number);
        server->shown(alert, number);
    }

private:
    bool connect() {
        if (connection && connection->isOpen())
            return true;
        connection.reset();
        server.reset();
        if (const auto address = sessionBusAddress(variables))
            connection = BusConnection::open(*address, limit, cancel);
        return connection.has_value();
    }

    /// The question for what it can do starts a server where there is none.
    bool findServer() {
        if (server && connection->ownerOf(wellKnownName) == server->uniqueName())
            return true;
        server.reset();
        if (const auto reply = connection->call(method(wellKnownName, "GetCapabilities"), nullptr, "(as)"))
            server.emplace(reply->sender, hasMarkup(reply->values.get()));
        return server.has_value();
    }

    const SessionBusVariables& variables;
    const std::chrono::milliseconds limit;
    GCancellable* const cancel;
    std::optional<BusConnection> connection;
    std::optional<NotificationServer> server;
};

} // namespace

class DesktopNotifier::Courier {
public:
    Courier(const SessionBusVariables& variables, std::chrono::milliseconds limit)
        : cancel(g_cancellable_new()), thread([this, &variables, limit] { run(variables, limit); }) {}

    ~Courier() {
        {
            const std::lock_guard lock(mutex);
            isEnding = true;
        }
        changed.notify_one();
        g_cancellable_cancel(cancel.get());
        thread.join();
    }
    Courier(const Courier&) = delete;
    Courier& operator=(const Courier&) = delete;

    void take(const Alert& alert) {
        {
            const std::lock_guard lock(mutex);
            if (waiting.size() == mostWaiting)
                waiting.pop_front();
            waiting.push_back(alert);
        }
        changed.notify_one();
    }

private:
    void run(const SessionBusVariables& environment, std::chrono::milliseconds longest) {
        const ThreadContext context;
        Delivery delivery(environment, longest, cancel.get());
        while (const auto alert = next())
            try {
                delivery.deliver(*alert);
            } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): an alert less is shown
            }
    }

    /// Absent at the end.
    std::optional<Alert> next() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return isEnding || !waiting.empty(); });
        if (isEnding)
            return std::nullopt;
        std::optional<Alert> alert = std::move(waiting.front());
        waiting.pop_front();
        return alert;
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Alert> waiting; ///< under `mutex`, as `isEnding`
    bool isEnding = false;
    const GIOHandle<GCancellable> cancel;
    std::thread thread; ///< last: it uses all of the above
};

DesktopNotifier::DesktopNotifier(SessionBusVariables environment, std::chrono::milliseconds longest)
    : variables(std::move(environment)), limit(longest) {}

DesktopNotifier::~DesktopNotifier() = default;

void DesktopNotifier::post(const Alert& alert) {
    try {
        if (!courier)
            courier = std::make_unique<Courier>(variables, limit);
        courier->take(alert);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): no thread or no memory; the alert is in the list
    }
}

std::unique_ptr<Notifier> nativeNotifier() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value ? value : "");
    };
    return std::make_unique<DesktopNotifier>(SessionBusVariables{.address = variable("DBUS_SESSION_BUS_ADDRESS"),
                                                                 .runtimeFolder = variable("XDG_RUNTIME_DIR")});
}

} // namespace ostrivane
