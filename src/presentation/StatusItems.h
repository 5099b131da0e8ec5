#pragma once

namespace Quillory {

// What the coordinator asks of the items in the menu bar. Main thread only.
class StatusItems {
public:
    virtual ~StatusItems() = default;

    // Makes the items of pinned sheets follow the store's pins.
    virtual void rebuildPins() = 0;
};

}
