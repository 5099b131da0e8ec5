#pragma once

#include <QMargins>
#include <QSize>

#include <cstdint>
#include <functional>
#include <memory>

namespace Quillory {

// Above what else a window stands.
enum class WindowLevel : std::int32_t { normal = 0, floating = 3 };

// The places a window shows in beside its own, as a set of bits.
enum class CollectionBehavior : std::uint32_t {
    none = 0,
    canJoinAllSpaces = 0x1,
    fullScreenAuxiliary = 0x100,
    canJoinAllApplications = 0x40000,
    // Over every program, on every workspace, beside what fills the screen.
    everywhere = canJoinAllSpaces | fullScreenAuxiliary | canJoinAllApplications,
};

// A window of ours as the window manager sees it. Everything is changed on the living window, shown or hidden, and
// holds through all that hides and shows it. Main thread only.
class PanelWindow {
public:
    virtual ~PanelWindow() = default;

    virtual void setLevel(WindowLevel level) = 0;
    virtual void setCollectionBehavior(CollectionBehavior behavior) = 0;

    // How much of the window at each side is nothing but shadow, and the size of all of it, in pixels of the window system.
    // Neither the window manager nor the pointer takes the shadow for the window. To be told of each new size.
    virtual void setShadow(QMargins shadow, QSize window) = 0;

    // Whether the user has minimized it. It offers no such thing, but window managers may have ways of their own.
    virtual bool isMinimized() const = 0;

    // To be called right before the window is shown, and as soon as it stands on the screen. Until then nothing of it is
    // changed that would hold its first picture up.
    virtual void willShow() = 0;
    virtual void didShow() = 0;
    virtual void didHide() = 0;
};

// Makes the one for a window of ours, by its number in the window system.
using MakePanelWindow = std::function<std::unique_ptr<PanelWindow>(std::uint64_t window)>;

}
