#include "settings/AboutSection.h"

#include <QLabel>

namespace Quillory {

AboutSection::AboutSection(QWidget* updates, QString const& versionText, QWidget* parent)
    : SettingsSection(QStringLiteral("Quillory"), parent)
{
    if (updates)
        addRow(updates);
    auto* const line = addText(versionText);
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
}

}
