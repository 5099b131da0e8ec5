#pragma once

#include <QRect>

#include <optional>

namespace Quillory {

// Keeps a frame that the panel passes on its way to where it was asked to be from being taken for the user's wish. The
// window system confirms later, and a window manager may have a mind of its own: the guard lasts until the panel is on
// screen where it was asked to be, or the user moves it.
class PanelFrameGuard {
public:
    void begin(QRect const& asked) { m_asked = asked; }
    void userMoves() { m_asked.reset(); }

    // The panel has this frame now. `isOnScreen`: the window system has shown it there.
    void frameIs(QRect const& frame, bool isOnScreen)
    {
        if (isOnScreen && frame == m_asked)
            m_asked.reset();
    }

    bool isOn() const { return m_asked.has_value(); }

private:
    std::optional<QRect> m_asked;
};

}
