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
    if (!hasStream())
        return;
    std::erase_if(m_streamsBelow, [&](auto const& stream) { return !foldersBelow.contains(stream.first); });
    bool isAnyNew = false;
    for (auto const& folder : foldersBelow) {
        auto& stream = m_streamsBelow[folder];
        if (stream.isActive())
            continue;
        stream = m_events.watch(m_folder + u'/' + folder, latency, m_changed);
        isAnyNew = isAnyNew || stream.isActive();
    }
    if (isAnyNew)
        m_changed();
}

void LibraryWatcher::stop()
{
    m_stream.end();
    m_streamsBelow.clear();
}

}
