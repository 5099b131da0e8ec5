#pragma once

#include "platform/Screens.h"

namespace Quillory {

// Screens that a test connects and takes away, unscaled and without bars.
class FakeScreens final : public Screens {
public:
    explicit FakeScreens(QList<QRect> const& frames) { connect(frames); }

    void connect(QList<QRect> const& frames)
    {
        m_screens.clear();
        for (auto const& frame : frames)
            m_screens.append({ frame, frame, frame });
    }

    QList<Screen> screens() const override { return m_screens; }
    QPoint pointer() const override { return pointerAt; }

    QPoint pointerAt;

private:
    QList<Screen> m_screens;
};

}
