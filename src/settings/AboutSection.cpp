#include "settings/AboutSection.h"

#include <QLabel>

namespace Quillory {

AboutSection::AboutSection(QWidget* updates, QString const& version, QWidget* parent)
    : SettingsSection(QStringLiteral("Quillory"), parent)
{
    if (updates)
        addRow(updates);
    auto* const line = addText(tr("Version %1").arg(version.isEmpty() ? tr("Unknown") : version));
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
}

}
