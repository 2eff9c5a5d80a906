// Loaded ahead of a program: tells the descriptor of OSTRIVANE_FIRST_FRAME when the program's first picture goes to the
// X server.

#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <unistd.h>

#include <xcb/xcb.h>

namespace {

void tellOnce() {
    static bool isTold = false;
    const char* descriptor = std::getenv("OSTRIVANE_FIRST_FRAME");
    if (isTold || !descriptor)
        return;
    isTold = true;
    [[maybe_unused]] const auto written = ::write(std::atoi(descriptor), "!", 1);
}

} // namespace

extern "C" xcb_void_cookie_t xcb_put_image(xcb_connection_t* c, std::uint8_t format, xcb_drawable_t drawable,
                                           xcb_gcontext_t gc, std::uint16_t width, std::uint16_t height,
                                           std::int16_t dst_x, std::int16_t dst_y, std::uint8_t left_pad,
                                           std::uint8_t depth, std::uint32_t data_len, const std::uint8_t* data) {
    // The toolkit loads these libraries for itself alone: they are not next in line.
    static const auto real =
        reinterpret_cast<decltype(&xcb_put_image)>(::dlsym(::dlopen("libxcb.so.1", RTLD_LAZY), "xcb_put_image"));
    const auto cookie = real(c, format, drawable, gc, width, height, dst_x, dst_y, left_pad, depth, data_len, data);
    xcb_flush(c);
    tellOnce();
    return cookie;
}

extern "C" xcb_void_cookie_t xcb_shm_put_image(xcb_connection_t* c, xcb_drawable_t drawable, xcb_gcontext_t gc,
                                               std::uint16_t total_width, std::uint16_t total_height,
                                               std::uint16_t src_x, std::uint16_t src_y, std::uint16_t src_width,
                                               std::uint16_t src_height, std::int16_t dst_x, std::int16_t dst_y,
                                               std::uint8_t depth, std::uint8_t format, std::uint8_t send_event,
                                               std::uint32_t shmseg, std::uint32_t offset) {
    static const auto real = reinterpret_cast<decltype(&xcb_shm_put_image)>(
        ::dlsym(::dlopen("libxcb-shm.so.0", RTLD_LAZY), "xcb_shm_put_image"));
    const auto cookie = real(c, drawable, gc, total_width, total_height, src_x, src_y, src_width, src_height, dst_x,
                             dst_y, depth, format, send_event, shmseg, offset);
    xcb_flush(c);
    tellOnce();
    return cookie;
}
