#pragma once

#include "platform/Registration.h"

#include <QList>
#include <QPoint>
#include <QRect>

#include <functional>

namespace Quillory {

// The screens of the desktop. Main thread only.
class Screens {
public:
    struct Screen {
        QRect frame;
        QRect visibleFrame; // without what bars and docks keep for themselves
        QRect pixels; // the same frame in the pixels of the window system, which differ where the desktop is scaled
        bool operator==(Screen const&) const = default;
    };

    virtual ~Screens() = default;

    // The main one first. Empty while none is connected.
    virtual QList<Screen> screens() const = 0;

    // Calls `changed` after a screen came, went or took another size or place.
    virtual Registration observeChanges(std::function<void()> changed) = 0;

    // The pointer's position, in the coordinates of `frame`.
    virtual QPoint pointer() const = 0;
};

}
