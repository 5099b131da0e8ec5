#pragma once

#include "platform/OpenPanel.h"

#include <memory>

namespace Quillory {

// Makes file dialogs, and knows the windows that they can be shown over. Main thread only.
class OpenPanels {
public:
    virtual ~OpenPanels() = default;

    virtual std::unique_ptr<OpenPanel> openPanel() = 0;

    // Whether that window of ours is on screen and no dialog stands over it yet.
    virtual bool canAttachTo(std::uint64_t window) const = 0;

    // The folder of the applications that are installed for everybody.
    virtual QString applicationsFolder() const = 0;
};

}
