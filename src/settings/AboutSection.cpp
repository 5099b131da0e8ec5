#include "settings/AboutSection.h"

#include <QLabel>

namespace Quillory {

AboutSection::AboutSection(QWidget* updates, QString const& versionText, QWidget* parent)
    : SettingsSection(QStringLiteral("Quillory"), parent)
{
    if (updates) {
        addRow(updates);
        addText(tr("Checks for updates about once a day. Updates are installed with your approval."), Look::secondary);
    }
    auto* const line = addText(versionText);
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
}

}
