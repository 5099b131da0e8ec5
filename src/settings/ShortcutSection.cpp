#include "settings/ShortcutSection.h"

#include "reader/BarButton.h"

#include <QLabel>

namespace Quillory {

namespace {

// A text that is shown while there is something to say.
void say(QLabel& label, QString const& text)
{
    label.setText(text);
    label.setVisible(!text.isEmpty());
}

}

ShortcutSection::ShortcutSection(
    Recorder::Services const& services, std::function<void()> const& askDesktopAgain, QWidget* parent)
    : SettingsSection(tr("Keyboard shortcuts"), parent)
{
    addText(tr("Click a shortcut field, then press your key combination. Use its clear button to remove it."),
        Look::secondary);
    addRow(
        tr("Toggle Quillory:"), new Recorder(services, ShortcutName::toggleQuillory(), tr("Toggle Quillory"), card()));
    m_toggleBinding = addNote({});
    addNote(tr("Press once to show the reader; press again to hide it."));
    addRow(tr("Hold to peek:"), new Recorder(services, ShortcutName::peekQuillory(), tr("Hold to peek"), card()));
    m_peekBinding = addNote({});
    addNote(tr("Keep the shortcut keys pressed to read. Release to close, even if the reader was already open."));
    m_warning = addText(
        tr("Choose different shortcuts for toggle and peek. Hold to peek is inactive while they match."),
        Look::warning);
    m_desktopKeys = addText({}, Look::secondary);
    auto* const askAgain = BarButton::withText(tr("Ask the Desktop Again"), {}, BarButton::Look::framed, card());
    connect(askAgain, &BarButton::clicked, this, askDesktopAgain);
    addRow(askAgain);
    m_askAgain = askAgain;
    addText(tr("Inside the reader: ⌘K searches your library; ⌘F finds text in the current sheet."), Look::secondary);
}

void ShortcutSection::refresh(SettingsState const& state)
{
    say(*m_toggleBinding, state.toggleBinding);
    say(*m_peekBinding, state.peekBinding);
    m_warning->setVisible(state.shortcutsMatch);
    say(*m_desktopKeys, state.desktopKeys);
    m_askAgain->setVisible(state.canAskDesktopAgain);
}

}
