#pragma once

#include "platform/FileEvents.h"
#include "platform/Registration.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <map>

namespace Quillory {

// Reports that something in the library folder changed, or in a folder below it that sheets take pictures from.
// Without a stream, where the system can give none, it exists and reports nothing. Main thread only.
// The folder is found again, and a stream asked for again, at each `follow`.
class LibraryWatcher {
public:
    static constexpr std::chrono::milliseconds latency { 150 };

    LibraryWatcher(FileEvents& events, QString const& folder, std::function<void()> changed);

    // To be called when the folder has been read. Watches these folders below it and no others. Those that are missing are
    // tried again next time. A folder that is watched from now on is reported as a change: something may have come before
    // the watch did.
    void follow(QStringList const& foldersBelow);

    void stop();
    bool hasStream() const { return m_stream.isActive(); }

private:
    bool watch(Registration& stream, QString const& folder) const;

    FileEvents& m_events;
    QString m_folder;
    std::function<void()> m_changed; // null once it is stopped
    Registration m_stream;
    std::map<QString, Registration> m_streamsBelow;
};

}
