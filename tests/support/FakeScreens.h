#pragma once

#include "platform/Screens.h"

#include <utility>

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
        if (m_changed)
            m_changed();
    }

    QList<Screen> screens() const override { return m_screens; }
    Registration observeChanges(std::function<void()> changed) override
    {
        m_changed = std::move(changed);
        return Registration([this] { m_changed = nullptr; });
    }
    QPoint pointer() const override { return pointerAt; }

    QPoint pointerAt;

private:
    QList<Screen> m_screens;
    std::function<void()> m_changed;
};

}
