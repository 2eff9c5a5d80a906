#include "app/window/WindowVisibility.hpp"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace ostrivane {

namespace {

/// X11 sends the visibility of a window to who asks for it. With a compositor every window counts as visible, and the
/// toolkit asks for nothing.
class XCBCoveredWindows final : public CoveredWindows, public QAbstractNativeEventFilter {
public:
    XCBCoveredWindows(xcb_connection_t* server, QObject* parent) : CoveredWindows(parent), connection(server) {
        QGuiApplication::instance()->installNativeEventFilter(this);
    }

    void watch(QWindow& watched) override {
        window = static_cast<xcb_window_t>(watched.winId());
        const auto reply =
            xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window), nullptr);
        if (!reply)
            return;
        const std::uint32_t mask = reply->your_event_mask | XCB_EVENT_MASK_VISIBILITY_CHANGE;
        std::free(reply);
        xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(connection);
    }

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override {
        if (type != "xcb_generic_event_t")
            return false;
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        constexpr std::uint8_t sentByOther = 0x80;
        if ((event->response_type & ~sentByOther) != XCB_VISIBILITY_NOTIFY)
            return false;
        xcb_visibility_notify_event_t told;
        std::memcpy(&told, event, sizeof told);
        if (told.window == window)
            Q_EMIT changed(told.state == XCB_VISIBILITY_FULLY_OBSCURED);
        return false;
    }

private:
    xcb_connection_t* connection;
    xcb_window_t window = XCB_WINDOW_NONE;
};

} // namespace

CoveredWindows* makeCoveredWindows(QObject* parent) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 && x11->connection() ? new XCBCoveredWindows(x11->connection(), parent) : nullptr;
}

} // namespace ostrivane
