#include "tests/app/model/platform/linux/FakeDesktop.hpp"

#include "app/model/platform/linux/BusConnection.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace ostrivane {

namespace {

constexpr auto patience = std::chrono::seconds(30);
constexpr const char* notificationsName = "org.freedesktop.Notifications";

constexpr const char* interfaceXML = R"(<node><interface name="org.freedesktop.Notifications">
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
  <method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/>
  </method>
</interface></node>)";

FakeDesktop::Notification notificationOf(GVariant* arguments) {
    const char *program = nullptr, *icon = nullptr, *summary = nullptr, *body = nullptr;
    guint32 replaces = 0;
    gint32 time = 0;
    GVariant *actions = nullptr, *hints = nullptr;
    g_variant_get(arguments, "(&su&s&s&s@as@a{sv}i)", &program, &replaces, &icon, &summary, &body, &actions, &hints,
                  &time);
    const GIOHandle<GVariant> heldActions(actions), heldHints(hints);
    FakeDesktop::Notification notification{.program = program,
                                           .icon = icon,
                                           .summary = summary,
                                           .body = body,
                                           .replaces = replaces,
                                           .actions = g_variant_n_children(actions),
                                           .time = time};
    const char* entry = nullptr;
    if (g_variant_lookup(hints, "desktop-entry", "&s", &entry))
        notification.desktopEntry = entry;
    guchar urgency = 0;
    if (g_variant_lookup(hints, "urgency", "y", &urgency))
        notification.urgency = urgency;
    return notification;
}

} // namespace

FakeDesktop::FakeDesktop(const std::string& address, std::vector<std::string> able, std::uint32_t firstNumber)
    : capabilities(std::move(able)), nextNumber(firstNumber), loop(nullptr) {
    std::promise<bool> ready;
    auto isReady = ready.get_future();
    thread = std::thread([this, address, &ready] { run(address, std::move(ready)); });
    if (!isReady.get())
        ADD_FAILURE() << "no server on " << address;
}

FakeDesktop::~FakeDesktop() {
    g_main_loop_quit(loop);
    thread.join();
    g_main_loop_unref(loop);
    for (const auto& [invocation, number] : held)
        g_object_unref(invocation);
}

void FakeDesktop::run(const std::string& address, std::promise<bool> isReady) {
    const ThreadContext context;
    loop = g_main_loop_new(g_main_context_get_thread_default(), FALSE);
    const GIOHandle<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    if (!connection) {
        isReady.set_value(false);
        return;
    }
    GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(interfaceXML, nullptr);
    GDBusInterfaceVTable table{};
    table.method_call = [](GDBusConnection*, const char*, const char*, const char*, const char* method,
                           GVariant* arguments, GDBusMethodInvocation* invocation,
                           gpointer self) { static_cast<FakeDesktop*>(self)->called(method, arguments, invocation); };
    g_dbus_connection_register_object(connection.get(), "/org/freedesktop/Notifications", node->interfaces[0], &table,
                                      this, nullptr, nullptr);
    g_dbus_node_info_unref(node);
    constexpr guint32 atOnce = 4;
    const GIOHandle<GVariant> owned(g_dbus_connection_call_sync(
        connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", notificationsName, atOnce), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    isReady.set_value(owned != nullptr);
    g_main_loop_run(loop);
    g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
}

void FakeDesktop::called(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation) {
    {
        const std::lock_guard lock(mutex);
        if (method == "GetCapabilities") {
            ++asked;
            GVariantBuilder names;
            g_variant_builder_init(&names, G_VARIANT_TYPE("as"));
            for (const std::string& name : capabilities)
                g_variant_builder_add(&names, "s", name.c_str());
            g_dbus_method_invocation_return_value(invocation, g_variant_new("(as)", &names));
            return;
        }
        auto notification = notificationOf(arguments);
        held.push_back({invocation, notification.replaces ? notification.replaces : nextNumber++});
        notifications.push_back(std::move(notification));
        if (!isHolding)
            answer(lock);
    }
    changed.notify_all();
}

void FakeDesktop::answer(const std::lock_guard<std::mutex>& /*lock*/) {
    for (const auto& [invocation, number] : std::exchange(held, {}))
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(u)", number));
}

std::vector<FakeDesktop::Notification> FakeDesktop::told(std::size_t count) {
    std::unique_lock lock(mutex);
    changed.wait_for(lock, patience, [&] { return notifications.size() >= count; });
    return {notifications.begin(),
            notifications.begin() + static_cast<std::ptrdiff_t>(std::min(count, notifications.size()))};
}

FakeDesktop::Notification FakeDesktop::told(const std::string& summary) {
    std::unique_lock lock(mutex);
    const auto find = [&] { return std::ranges::find(notifications, summary, &Notification::summary); };
    changed.wait_for(lock, patience, [&] { return find() != notifications.end(); });
    const auto found = find();
    return found == notifications.end() ? Notification() : *found;
}

void FakeDesktop::holdAnswers() {
    const std::lock_guard lock(mutex);
    isHolding = true;
}

void FakeDesktop::answer() {
    const std::lock_guard lock(mutex);
    isHolding = false;
    answer(lock);
}

int FakeDesktop::questions() {
    const std::lock_guard lock(mutex);
    return asked;
}

} // namespace ostrivane
