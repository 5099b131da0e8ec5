#include "presentation/TakenShortcuts.h"

#include <utility>

namespace Quillory {

TakenShortcuts::TakenShortcuts(Services services)
    : m_services(std::move(services))
    , m_activations(m_services.workspace.observeActivation([this](auto const&) { look(); }))
    , m_changes(
          m_services.notifications.observe(ShortcutStorage::shortcutByNameDidChange(), [this](auto const&) { look(); }))
{
}

void TakenShortcuts::look()
{
    auto taken = m_services.shortcuts.registerWhatIsTaken();
    if (std::exchange(m_taken, std::move(taken)) != m_taken) {
        m_services.store.withdrawMessage(m_sentences);
        QStringList sentences;
        for (auto const& shortcut : m_taken) {
            sentences.append(tr("%1 is used by another program.").arg(m_services.inWords(shortcut)));
            m_services.log(sentences.last());
        }
        m_sentences = sentences.join(u'\n');
        m_isTold = false;
    }
    // Whatever else the reader has to say comes first.
    if (!m_isTold && !m_sentences.isEmpty() && !m_services.store.message.value()) {
        m_services.store.showMessage(m_sentences);
        m_isTold = true;
    }
}

}
