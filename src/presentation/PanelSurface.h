#pragma once

namespace Quillory {

// What the coordinator asks of the reader panel. Main thread only.
class PanelSurface {
public:
    virtual ~PanelSurface() = default;

    // Brings the panel up, in front of everything and with the keyboard on the text.
    virtual void show() = 0;

    // Takes it off the screen and keeps it.
    virtual void orderOut() = 0;
};

}
