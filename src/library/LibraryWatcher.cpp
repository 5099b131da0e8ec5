#include "library/LibraryWatcher.h"

namespace Quillory {

LibraryWatcher::LibraryWatcher(FileEvents& events, QString const& folder, std::function<void()> changed)
    : m_events(events)
    , m_folder(folder)
    , m_changed(std::move(changed))
    , m_stream(events.watch(folder, latency, m_changed))
{
}

void LibraryWatcher::follow(QStringList const& foldersBelow)
{
    if (!m_changed)
        return;
    m_events.lookAgain();
    std::erase_if(m_streamsBelow, [&](auto const& stream) { return !foldersBelow.contains(stream.first); });
    bool isAnyNew = watch(m_stream, m_folder);
    for (auto const& folder : foldersBelow)
        isAnyNew = watch(m_streamsBelow[folder], m_folder + u'/' + folder) || isAnyNew;
    if (isAnyNew)
        m_changed();
}

// True when a stream came about.
bool LibraryWatcher::watch(Registration& stream, QString const& folder) const
{
    if (stream.isActive())
        return false;
    stream = m_events.watch(folder, latency, m_changed);
    return stream.isActive();
}

void LibraryWatcher::stop()
{
    m_changed = nullptr;
    m_stream.end();
    m_streamsBelow.clear();
}

}
