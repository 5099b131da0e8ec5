#pragma once

#include "platform/OpenPanels.h"

namespace Quillory {

// Window-modal file dialogs of the toolkit. A window is known by its native number.
class QtOpenPanels final : public OpenPanels {
public:
    std::unique_ptr<OpenPanel> openPanel() override;
    bool canAttachTo(std::uint64_t window) const override;
    QString applicationsFolder() const override;
};

}
