#pragma once

#include <QRect>

#include <variant>

namespace Quillory {

// Tells the user's own moves of the panel from all others: the program puts it on the user's screen, and a window
// manager may have a mind of its own. Only where the user wants it is to be remembered.
class PanelFrameGuard {
public:
    // The window manager's last answer to a placing: a hidden window comes to the front when all is
    // done, and one that is up already is given its frame.
    enum class Until { inFront, nextFrame };

    // The program is about to place the panel. What follows is not the user's wish.
    void place(Until until) { m_phase = Placing { until }; }

    // The panel has come to the front with this frame, or the user takes hold of it there.
    void settle(QRect const& frame)
    {
        if (std::holds_alternative<Placing>(m_phase))
            m_phase = Settled { frame };
    }

    // The window system says that the panel has this frame now.
    void frameIs(QRect const& frame)
    {
        if (auto const* const placing = std::get_if<Placing>(&m_phase); placing && placing->until == Until::nextFrame)
            settle(frame);
        else if (auto const* const settled = std::get_if<Settled>(&m_phase); settled && settled->frame != frame)
            m_phase = MovedByUser {};
    }

    bool isMovedByUser() const { return std::holds_alternative<MovedByUser>(m_phase); }

private:
    struct Placing {
        Until until;
    };
    struct Settled {
        QRect frame;
    };
    struct MovedByUser { };

    std::variant<Placing, Settled, MovedByUser> m_phase { Placing { Until::inFront } };
};

}
