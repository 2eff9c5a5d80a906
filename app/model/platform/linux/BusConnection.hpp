#pragma once

// Includes GIO: for the sources beside it alone.
#include <gio/gio.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace ostrivane {

struct GIODrop {
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GSource* source) const { g_source_unref(source); }
    template <class Object>
    void operator()(Object* object) const {
        g_object_unref(object);
    }
};
template <class Type>
using GIOHandle = std::unique_ptr<Type, GIODrop>;

/// The calling thread's own place for what GIO has to say, in place of the main thread's.
class ThreadContext {
public:
    ThreadContext();
    ~ThreadContext();
    ThreadContext(const ThreadContext&) = delete;
    ThreadContext& operator=(const ThreadContext&) = delete;

private:
    GIOHandle<GMainContext> context;
};

/// A connection to a message bus that is shared with nobody, for a thread with a `ThreadContext`. Nothing that it does
/// takes longer than `limit`, and all of it ends at once when `cancel` is cancelled. Failure is an absent answer.
class BusConnection {
public:
    using Limit = std::chrono::milliseconds;

    struct Method {
        const char* destination;
        const char* path;
        const char* interface;
        const char* name;
    };
    struct Reply {
        std::string sender;
        GIOHandle<GVariant> values;
    };

    static std::optional<BusConnection> open(const std::string& address, Limit limit, GCancellable* cancel);

    bool isOpen() const { return !g_dbus_connection_is_closed(connection.get()); }

    /// Takes floating `arguments` over. A reply of another type than `expected` is none.
    std::optional<Reply> call(const Method& method, GVariant* arguments, const char* expected) const;

    /// The unique name of who owns a name now.
    std::optional<std::string> ownerOf(const char* name) const;

private:
    BusConnection(GIOHandle<GDBusConnection> opened, Limit longest, GCancellable* canceller)
        : connection(std::move(opened)), limit(longest), cancel(canceller) {}

    GIOHandle<GDBusConnection> connection;
    Limit limit;
    GCancellable* cancel;
};

} // namespace ostrivane
