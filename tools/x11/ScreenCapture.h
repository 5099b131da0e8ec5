#pragma once

#include <QImage>
#include <QRect>
#include <QString>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <expected>
#include <memory>
#include <span>

namespace Quillory {

// Reads what is on the screen of the X server that DISPLAY names, through shared memory: a reading area takes well
// under a millisecond. Needs a screen with 32 bits for each pixel.
class ScreenCapture {
public:
    enum class Notices { none, ofDrawing };

    // `waitForDrawing` needs notices of it.
    static std::expected<std::unique_ptr<ScreenCapture>, QString> open(Notices notices = Notices::none);
    ~ScreenCapture();
    ScreenCapture(ScreenCapture const&) = delete;
    ScreenCapture& operator=(ScreenCapture const&) = delete;

    QRect screen() const;

    // The pixels of `area`, which lies within the screen, row by row; the highest byte means nothing. Valid until the
    // next call. Empty when the server is gone.
    std::span<std::uint32_t const> pixels(QRect const& area);

    // Waits until something was drawn on the screen since the last call, no longer than `timeout`. Nothing is asked of
    // the server meanwhile, so that the wait doesn't hold up what it waits for. False too when the server is gone.
    bool waitForDrawing(std::chrono::milliseconds timeout);

    // A copy that stands by itself. Null when the server is gone.
    QImage picture(QRect const& area);

private:
    ScreenCapture(xcb_connection_t* connection, xcb_screen_t const* screen);
    bool shareMemory();
    bool followDrawing();
    bool takeNotices();

    xcb_connection_t* m_connection;
    xcb_screen_t const* m_screen;
    std::uint32_t m_segment = 0;
    void* m_memory = nullptr;
};

}
