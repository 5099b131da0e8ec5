#include "library/SheetFiles.h"

#include "text/OneLine.h"

#include <utility>

namespace Quillory {

SheetFiles::SheetFiles(FileOpener& opener, Executor& executor, std::function<void(QString const&)> failed)
    : m_opener(opener)
    , m_executor(executor)
    , m_failed(std::move(failed))
{
}

SheetFiles::File SheetFiles::in(QString const& folder, QString const& id)
{
    auto const separator = folder.endsWith(u'/') ? QString() : QStringLiteral("/");
    return { id, folder + separator + id };
}

void SheetFiles::open(File const& file)
{
    m_opener.open(file.path, reporting([name = file.name](FileOpener::Failure const&) {
        return tr("Could not open %1 in its default application.").arg(name);
    }));
}

void SheetFiles::openLink(QString const& link)
{
    m_opener.openLink(link, reporting([link](FileOpener::Failure const&) {
        return tr("Could not open %1 in the browser.").arg(oneLine(link));
    }));
}

void SheetFiles::reveal(File const& file)
{
    m_opener.reveal(file.path);
}

void SheetFiles::openWith(File const& file, QString const& application)
{
    m_opener.openWith(file.path, application, reporting([name = file.name](FileOpener::Failure const& failure) {
        return tr("Could not open %1: %2").arg(name, failure.description);
    }));
}

FileOpener::Done SheetFiles::reporting(std::function<QString(FileOpener::Failure const&)> sentence) const
{
    return m_asked.guarded([this, deadline = m_executor.now() + launchAnswerTime, sentence = std::move(sentence)](
                               std::expected<void, FileOpener::Failure> const& opened) {
        if (!opened && m_executor.now() <= deadline)
            m_failed(sentence(opened.error()));
    });
}

}
