#pragma once

namespace Quillory {

// The items in the menu bar as the coordinator uses them. Main thread only.
class StatusItems {
public:
    virtual ~StatusItems() = default;

    // Makes the items of pinned sheets follow the store's pins.
    virtual void rebuildPins() = 0;
};

}
