#pragma once

#include "platform/StatusItem.h"

#include <memory>

namespace Quillory {

// The desktop's bar of status items. Where there is none, items wait for one. Main thread only.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    // The bar outlives its items.
    virtual std::unique_ptr<StatusItem> statusItem(StatusItem::Target target) = 0;
};

}
