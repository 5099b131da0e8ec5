#pragma once

#include "platform/PanelWindow.h"

namespace Quillory {

// The panel's level while it is up: like any other window, or over everything for as long as keys are held.
enum class PanelPresence { resident, peek };

constexpr WindowLevel levelOf(PanelPresence presence)
{
    return presence == PanelPresence::peek ? WindowLevel::floating : WindowLevel::normal;
}

constexpr CollectionBehavior collectionBehaviorOf(PanelPresence presence)
{
    return presence == PanelPresence::peek ? CollectionBehavior::everywhere : CollectionBehavior::none;
}

// The reader panel as the coordinator uses it. Main thread only.
class PanelSurface {
public:
    virtual ~PanelSurface() = default;

    // Brings the panel up where it belongs, with its view afresh, in front of everything and with the keyboard on the
    // text. Asks for no saving of the frame on its way.
    virtual void show(PanelPresence presence) = 0;

    // Brings it to the front as it is.
    virtual void makeKeyAndOrderFront() = 0;

    // Takes it off the screen and keeps it.
    virtual void orderOut() = 0;

    // Whether the user has minimized it.
    virtual bool isMinimized() const = 0;

    // Stores the frame if the user has moved or resized the panel since `show` put it where it is.
    virtual void savePanelFrame() = 0;

    // Puts the keyboard on the text in a later turn, unless a search field is open then.
    virtual void focusReader() = 0;

    virtual void applyPeekLevel(PanelPresence presence) = 0;
    virtual void dismissTooltips() = 0;
};

}
