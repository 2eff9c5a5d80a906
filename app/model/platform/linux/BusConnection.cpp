#include "app/model/platform/linux/BusConnection.hpp"

#include <utility>

namespace ostrivane {

namespace {

constexpr const char* bus = "org.freedesktop.DBus";

BusConnection::Method busMethod(const char* name) {
    return {.destination = bus, .path = "/org/freedesktop/DBus", .interface = bus, .name = name};
}

struct Opening {
    GIOHandle<GDBusConnection> connection;
    bool isDone = false;
};

void opened(GObject* /*source*/, GAsyncResult* result, gpointer data) {
    auto& opening = *static_cast<Opening*>(data);
    opening.connection.reset(g_dbus_connection_new_for_address_finish(result, nullptr));
    opening.isDone = true;
}

gboolean giveUp(gpointer cancellable) {
    g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
    return G_SOURCE_REMOVE;
}

void giveUpToo(GCancellable* /*cancel*/, gpointer cancellable) {
    g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
}

} // namespace

ThreadContext::ThreadContext() : context(g_main_context_new()) {
    g_main_context_push_thread_default(context.get());
}

ThreadContext::~ThreadContext() {
    while (g_main_context_iteration(context.get(), FALSE)) // what is left would keep its connection
        ;
    g_main_context_pop_thread_default(context.get());
}

/// The bus is greeted by a call like any other: GIO's own greeting can neither be cancelled nor given a limit. The rest
/// of connecting has no limit either, but can be cancelled.
std::optional<BusConnection> BusConnection::open(const std::string& address, Limit limit, GCancellable* cancel) {
    GMainContext* context = g_main_context_get_thread_default();
    const GIOHandle<GCancellable> attempt(g_cancellable_new());
    const gulong chained = g_cancellable_connect(cancel, G_CALLBACK(giveUpToo), attempt.get(), nullptr);
    const GIOHandle<GSource> timer(g_timeout_source_new(static_cast<guint>(limit.count())));
    g_source_set_callback(timer.get(), giveUp, attempt.get(), nullptr);
    g_source_attach(timer.get(), context);

    Opening opening;
    g_dbus_connection_new_for_address(address.c_str(), G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT, nullptr,
                                      attempt.get(), opened, &opening);
    while (!opening.isDone)
        g_main_context_iteration(context, TRUE);

    g_source_destroy(timer.get());
    g_cancellable_disconnect(cancel, chained);
    if (!opening.connection)
        return std::nullopt;
    BusConnection connection(std::move(opening.connection), limit, cancel);
    if (!connection.call(busMethod("Hello"), nullptr, "(s)"))
        return std::nullopt;
    return connection;
}

std::optional<BusConnection::Reply> BusConnection::call(const Method& method, GVariant* arguments,
                                                        const char* expected) const {
    const GIOHandle<GDBusMessage> message(
        g_dbus_message_new_method_call(method.destination, method.path, method.interface, method.name));
    if (arguments)
        g_dbus_message_set_body(message.get(), arguments);
    const GIOHandle<GDBusMessage> reply(
        g_dbus_connection_send_message_with_reply_sync(connection.get(), message.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE,
                                                       static_cast<gint>(limit.count()), nullptr, cancel, nullptr));
    if (!reply || g_dbus_message_get_message_type(reply.get()) != G_DBUS_MESSAGE_TYPE_METHOD_RETURN)
        return std::nullopt;
    const char* sender = g_dbus_message_get_sender(reply.get());
    GVariant* values = g_dbus_message_get_body(reply.get());
    if (!sender || !values || !g_variant_is_of_type(values, G_VARIANT_TYPE(expected)))
        return std::nullopt;
    return Reply{sender, GIOHandle<GVariant>(g_variant_ref(values))};
}

std::optional<std::string> BusConnection::ownerOf(const char* name) const {
    const auto reply = call(busMethod("GetNameOwner"), g_variant_new("(s)", name), "(s)");
    if (!reply)
        return std::nullopt;
    const char* owner = nullptr;
    g_variant_get(reply->values.get(), "(&s)", &owner);
    return owner;
}

} // namespace ostrivane
