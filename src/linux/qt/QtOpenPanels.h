#pragma once

#include "platform/OpenPanels.h"

#include <QDir>

#include <memory>

namespace Quillory {

// Window-modal file dialogs of the toolkit. A window is known by its native number.
class QtOpenPanels final : public OpenPanels {
public:
    std::unique_ptr<OpenPanel> openPanel() override;
    bool canAttachTo(std::uint64_t window) const override;
    QString applicationsFolder() const override;

private:
    std::shared_ptr<QString> m_lastFolder = std::make_shared<QString>(QDir::homePath());
};

}
