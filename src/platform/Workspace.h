#pragma once

#include "platform/Registration.h"

#include <QRect>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace Quillory {

// A program with a window on the user's desktop, as seen at one moment.
struct RunningApplication {
    QString bundleIdentifier;
    // The very window that was in front, so that the keyboard goes back there and not to a sibling.
    std::uint64_t window = 0;

    bool operator==(RunningApplication const&) const = default;
};

// The desktop's programs and which of them is in front. Main thread only.
class Workspace {
public:
    virtual ~Workspace() = default;

    // Absent when no window has the front.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;

    // The frame of the window in front, in pixels of the window system. Absent when none has the front.
    virtual std::optional<QRect> frontmostFrame() const = 0;

    // The bundle identifier that our own windows report.
    virtual QString mainBundleIdentifier() const = 0;

    // Gives the front and the keyboard to that application's window.
    virtual void activate(RunningApplication const& application) = 0;

    // Gives them to a window of ours, over whatever has them. To be called right after the window was shown.
    virtual void activateIgnoringOtherApps(std::uint64_t ownWindow) = 0;

    // Whether that, and `PanelWindow::didShow`, bring a window that is up already to the user, from another workspace
    // too. Elsewhere it has to be hidden and shown again.
    virtual bool canFetchWindows() const = 0;

    // To be called right before a window of ours is shown for the user's latest key or click, so that the desktop
    // does not take it for a window that pushes itself to the front.
    virtual void prepareToShow(std::uint64_t ownWindow) = 0;

    // Calls `activated` for each application that comes to the front, ours included. One whose windows the window
    // system can't name has neither identifier nor window.
    virtual Registration observeActivation(std::function<void(RunningApplication const&)> activated) = 0;
};

}
