#pragma once

#include "platform/Executor.h"
#include "platform/FileOpener.h"
#include "platform/Lifetime.h"

#include <QCoreApplication>
#include <QString>

#include <chrono>
#include <functional>

namespace Quillory {

// Hands the files and links of sheets to other programs, and says what could not be opened. Main thread only.
class SheetFiles {
    Q_DECLARE_TR_FUNCTIONS(Library)
public:
    struct File {
        QString name;
        QString path;
        bool operator==(File const&) const = default;
    };

    // A launcher may end with its editor: an answer that comes later than this says nothing about the start.
    static constexpr std::chrono::seconds launchAnswerTime { 5 };

    // Both services outlive it. `failed` gets a sentence for the user.
    SheetFiles(FileOpener& opener, Executor& executor, std::function<void(QString const&)> failed);

    static File in(QString const& folder, QString const& id);

    void open(File const& file);
    void openLink(QString const& link);
    void reveal(File const& file);
    // With an application as the open panel gives it.
    void openWith(File const& file, QString const& application);

    // Failures of what was asked for until now are nobody's business any more.
    void forget() { m_asked.end(); }

private:
    FileOpener::Done reporting(std::function<QString(FileOpener::Failure const&)> sentence) const;

    FileOpener& m_opener;
    Executor& m_executor;
    std::function<void(QString const&)> m_failed;
    Lifetime m_asked;
};

}
