#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <optional>

namespace ostrivane {

/// A client of a display that types into the window of another program.
class X11Visitor {
public:
    /// A key of a PC's keyboard, as the server has one.
    struct Key {
        xcb_keycode_t code;
        std::uint16_t held; ///< keys that are held meanwhile
    };
    static constexpr Key space{65, 0};
    static constexpr Key f6{72, 0};
    static constexpr Key controlF{41, XCB_MOD_MASK_CONTROL};

    /// @param display  of a server that runs
    explicit X11Visitor(const QByteArray& display)
        : connection(xcb_connect(display.constData(), nullptr)),
          root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {}
    ~X11Visitor() { xcb_disconnect(connection); }
    X11Visitor(const X11Visitor&) = delete;
    X11Visitor& operator=(const X11Visitor&) = delete;

    /// The window that the keyboard belongs to; absent while it belongs to none.
    std::optional<xcb_window_t> activeWindow() const {
        const auto reply = focus();
        if (!reply || reply->focus == XCB_INPUT_FOCUS_NONE || reply->focus == XCB_INPUT_FOCUS_POINTER_ROOT)
            return std::nullopt;
        return reply->focus;
    }

    /// Strikes one key after the other; the server has taken them when this returns.
    void type(xcb_window_t window, std::initializer_list<Key> keys) const {
        for (const Key& key : keys)
            for (const int kind : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
                xcb_key_press_event_t event{};
                event.response_type = static_cast<std::uint8_t>(kind);
                event.detail = key.code;
                event.state = key.held;
                event.root = root;
                event.event = window;
                event.same_screen = 1;
                xcb_send_event(connection, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
            }
        focus();
    }

private:
    struct Free {
        void operator()(void* reply) const { std::free(reply); }
    };

    std::unique_ptr<xcb_get_input_focus_reply_t, Free> focus() const {
        return {xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr), Free()};
    }

    xcb_connection_t* connection;
    xcb_window_t root;
};

} // namespace ostrivane
