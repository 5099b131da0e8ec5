#include "presentation/TakenShortcuts.h"

#include <utility>

namespace Quillory {

TakenShortcuts::TakenShortcuts(Services services)
    : m_services(std::move(services))
    , m_activations(m_services.workspace.observeActivation([this](auto const&) { look(); }))
    , m_changes(
          m_services.notifications.observe(ShortcutStorage::shortcutByNameDidChange(), [this](auto const&) { look(); }))
{
    if (m_services.desktopHotKeys)
        m_desktopChanges = m_services.desktopHotKeys->observeChanges([this] { look(); });
}

void TakenShortcuts::look()
{
    auto const before = std::exchange(m_sentences, sentences());
    if (m_sentences != before) {
        m_services.store.withdrawMessage(before.join(u'\n'));
        for (auto const& sentence : std::as_const(m_sentences)) {
            if (!before.contains(sentence))
                m_services.log(sentence);
        }
        m_isTold = false;
    }
    // Whatever else the reader has to say comes first.
    if (!m_isTold && !m_sentences.isEmpty() && !m_services.store.message.value()) {
        m_services.store.showMessage(m_sentences.join(u'\n'));
        m_isTold = true;
    }
}

QStringList TakenShortcuts::sentences()
{
    using enum DesktopHotKeys::State;
    QStringList all;
    for (auto const& shortcut : m_services.shortcuts.registerWhatIsTaken())
        all.append(tr("%1 is used by another program.").arg(m_services.inWords(shortcut)));
    if (!m_services.desktopHotKeys)
        return all;
    auto const state = m_services.desktopHotKeys->state();
    m_hadService = m_hadService || state == bound;
    if (state == refused)
        all.append(
            tr("Your desktop has given Quillory no keys. The settings tell how to call the reader without them."));
    else if (state == unavailable && m_hadService)
        all.append(tr("Your desktop’s service for keys has ended. Quillory’s keys work again once it is back."));
    return all;
}

}
