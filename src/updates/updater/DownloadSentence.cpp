#include "updates/updater/DownloadSentence.h"

#include <QCoreApplication>

namespace Quillory {

QString toSentence(Downloads::Fault fault)
{
    auto const text = [](char const* sentence) { return QCoreApplication::translate("Updates", sentence); };
    switch (fault) {
    case Downloads::Fault::refused:
        return text(QT_TRANSLATE_NOOP("Updates", "The server sent the request on to an address that is not secure."));
    case Downloads::Fault::unreachable:
        return text(QT_TRANSLATE_NOOP("Updates", "The server can't be reached."));
    case Downloads::Fault::untrusted:
        return text(QT_TRANSLATE_NOOP("Updates", "The connection to the server is not secure."));
    case Downloads::Fault::missing:
        return text(QT_TRANSLATE_NOOP("Updates", "The server does not have the file."));
    case Downloads::Fault::timedOut:
        return text(QT_TRANSLATE_NOOP("Updates", "The server took too long to answer."));
    case Downloads::Fault::tooLarge:
        return text(QT_TRANSLATE_NOOP("Updates", "The file on the server is too large."));
    case Downloads::Fault::interrupted:
        return text(QT_TRANSLATE_NOOP("Updates", "The connection ended early."));
    case Downloads::Fault::unwanted:
        return text(QT_TRANSLATE_NOOP("Updates", "The download was stopped."));
    }
    return {};
}

}
