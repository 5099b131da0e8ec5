#include "settings/ShortcutSection.h"

#include <QLabel>

namespace Quillory {

ShortcutSection::ShortcutSection(Recorder::Services const& services, QWidget* parent)
    : SettingsSection(tr("Keyboard shortcuts"), parent)
{
    addText(tr("Click a shortcut field, then press your key combination. Use its clear button to remove it."),
        Look::secondary);
    addRow(
        tr("Toggle Quillory:"), new Recorder(services, ShortcutName::toggleQuillory(), tr("Toggle Quillory"), card()));
    addNote(tr("Press once to show the reader; press again to hide it."));
    addRow(tr("Hold to peek:"), new Recorder(services, ShortcutName::peekQuillory(), tr("Hold to peek"), card()));
    addNote(tr("Keep the shortcut keys pressed to read. Release to close, even if the reader was already open."));
    m_warning = addText(
        tr("Choose different shortcuts for toggle and peek. Hold to peek is inactive while they match."),
        Look::warning);
    addText(tr("Inside the reader: ⌘K searches your library; ⌘F finds text in the current sheet."), Look::secondary);
}

void ShortcutSection::refresh(SettingsState const& state)
{
    m_warning->setVisible(state.shortcutsMatch);
}

}
