#include "words/InstalledWords.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>

namespace Quillory {

namespace {

QByteArray wordingForThisDesktop()
{
    QFile file(QStringLiteral(":/words/wording.json"));
    bool const isWanted = qEnvironmentVariable("QUILLORY_WORDING") != u"plain";
    return isWanted && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}

// Of two that know a text the one that came last is heard.
InstalledWords::InstalledWords()
    : m_wording(wordingForThisDesktop())
{
    QCoreApplication::installTranslator(&m_wording);
    auto const ofTheToolkit = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (m_toolkit.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"), ofTheToolkit))
        QCoreApplication::installTranslator(&m_toolkit);
    if (m_language.load(QLocale(), QStringLiteral("quillory"), QStringLiteral("_"), QStringLiteral(":/words")))
        QCoreApplication::installTranslator(&m_language);
}

InstalledWords::~InstalledWords()
{
    for (auto* const each : { &m_language, &m_toolkit, static_cast<QTranslator*>(&m_wording) })
        QCoreApplication::removeTranslator(each);
}

}
