#include "linux/qt/WindowSizeFilter.h"

#include <QGuiApplication>
#include <QScreen>

#include <xcb/xcb.h>

#include <cstdint>

namespace Quillory {

namespace {

// In pixels: as many as all screens have together, and as many again for a window that reaches over an edge.
bool isTooLarge(std::int64_t width, std::int64_t height)
{
    auto const* const screen = QGuiApplication::primaryScreen();
    if (!screen)
        return false;
    auto const pixels = QSizeF(screen->virtualSize()) * screen->devicePixelRatio();
    return static_cast<double>(width * height) > 2 * pixels.width() * pixels.height();
}

}

WindowSizeFilter::WindowSizeFilter()
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

WindowSizeFilter::~WindowSizeFilter()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool WindowSizeFilter::nativeEventFilter(QByteArray const& type, void* message, qintptr*)
{
    constexpr std::uint8_t sentEventBit = 0x80;
    if (type != "xcb_generic_event_t")
        return false;
    auto const& event = *static_cast<xcb_generic_event_t const*>(message);
    if ((event.response_type & ~sentEventBit) != XCB_CONFIGURE_NOTIFY)
        return false;
    auto const& configured = reinterpret_cast<xcb_configure_notify_event_t const&>(event);
    return isTooLarge(configured.width, configured.height);
}

}
