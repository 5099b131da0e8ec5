#include "tools/x11/ScreenCapture.h"

#include "linux/x11/X11Connection.h"

#include <poll.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <xcb/damage.h>
#include <xcb/shm.h>

namespace Quillory {

namespace {

bool hasWholePixels(xcb_connection_t* connection, std::uint8_t depth)
{
    auto formats = xcb_setup_pixmap_formats_iterator(xcb_get_setup(connection));
    for (; formats.rem; xcb_format_next(&formats)) {
        if (formats.data->depth == depth)
            return formats.data->bits_per_pixel == 32;
    }
    return false;
}

}

std::expected<std::unique_ptr<ScreenCapture>, QString> ScreenCapture::open(Notices notices)
{
    auto* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return std::unexpected(QStringLiteral("There is no X display to look at."));
    }
    auto const* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    std::unique_ptr<ScreenCapture> capture(new ScreenCapture(connection, screen));
    if (!hasWholePixels(connection, screen->root_depth))
        return std::unexpected(QStringLiteral("The screen does not have 32 bits for each pixel."));
    if (!capture->shareMemory())
        return std::unexpected(QStringLiteral("The X server shares no memory with this program."));
    if (notices == Notices::ofDrawing && !capture->followDrawing())
        return std::unexpected(QStringLiteral("The X server doesn't tell what is drawn."));
    return capture;
}

ScreenCapture::ScreenCapture(xcb_connection_t* connection, xcb_screen_t const* screen)
    : m_connection(connection)
    , m_screen(screen)
{
}

ScreenCapture::~ScreenCapture()
{
    xcb_disconnect(m_connection);
    if (m_memory)
        shmdt(m_memory);
}

bool ScreenCapture::shareMemory()
{
    auto const* extension = xcb_get_extension_data(m_connection, &xcb_shm_id);
    if (!extension || !extension->present)
        return false;
    auto const bytes = std::size_t { m_screen->width_in_pixels } * m_screen->height_in_pixels * 4;
    int const shared = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (shared < 0)
        return false;
    void* const memory = shmat(shared, nullptr, 0);
    m_segment = xcb_generate_id(m_connection);
    auto const request = xcb_shm_attach_checked(m_connection, m_segment, static_cast<std::uint32_t>(shared), 0);
    bool const isAttached = !XcbOwned<xcb_generic_error_t>(xcb_request_check(m_connection, request));
    // Marked for removal as soon as both sides are attached, so that nothing is left over however this ends.
    shmctl(shared, IPC_RMID, nullptr);
    if (memory == reinterpret_cast<void*>(-1))
        return false;
    m_memory = memory;
    return isAttached;
}

bool ScreenCapture::followDrawing()
{
    auto const* extension = xcb_get_extension_data(m_connection, &xcb_damage_id);
    if (!extension || !extension->present)
        return false;
    XcbOwned<xcb_damage_query_version_reply_t> const version(
        xcb_damage_query_version_reply(m_connection, xcb_damage_query_version(m_connection, 1, 1), nullptr));
    auto const request = xcb_damage_create_checked(
        m_connection, xcb_generate_id(m_connection), m_screen->root, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    return version && !XcbOwned<xcb_generic_error_t>(xcb_request_check(m_connection, request));
}

bool ScreenCapture::waitForDrawing(std::chrono::milliseconds timeout)
{
    if (takeNotices())
        return true;
    pollfd socket { xcb_get_file_descriptor(m_connection), POLLIN, 0 };
    poll(&socket, 1, static_cast<int>(timeout.count()));
    return takeNotices();
}

// All that are here: they are the only events that this connection gets.
bool ScreenCapture::takeNotices()
{
    bool wasAny = false;
    while (XcbOwned<xcb_generic_event_t> event { xcb_poll_for_event(m_connection) })
        wasAny = true;
    return wasAny;
}

QRect ScreenCapture::screen() const
{
    return { 0, 0, m_screen->width_in_pixels, m_screen->height_in_pixels };
}

std::span<std::uint32_t const> ScreenCapture::pixels(QRect const& area)
{
    auto const inside = area & screen();
    if (inside.isEmpty())
        return {};
    auto const width = static_cast<std::uint16_t>(inside.width());
    auto const height = static_cast<std::uint16_t>(inside.height());
    constexpr std::uint32_t allPlanes = 0xffffffff;
    auto const cookie = xcb_shm_get_image(m_connection, m_screen->root, static_cast<std::int16_t>(inside.x()),
        static_cast<std::int16_t>(inside.y()), width, height, allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment, 0);
    XcbOwned<xcb_shm_get_image_reply_t> const reply(xcb_shm_get_image_reply(m_connection, cookie, nullptr));
    if (!reply)
        return {};
    return { static_cast<std::uint32_t const*>(m_memory), std::size_t { width } * height };
}

QImage ScreenCapture::picture(QRect const& area)
{
    auto const inside = area & screen();
    auto const captured = pixels(inside);
    if (captured.empty())
        return {};
    auto const* bytes = reinterpret_cast<uchar const*>(captured.data());
    return QImage(bytes, inside.width(), inside.height(), inside.width() * 4, QImage::Format_RGB32).copy();
}

}
