#include "updates/feed/FeedFault.h"

#include <QCoreApplication>

namespace Quillory {

QString toSentence(FeedFault fault)
{
    auto const text = [](char const* sentence) { return QCoreApplication::translate("Updates", sentence); };
    switch (fault) {
    case FeedFault::noSignature:
        return text(QT_TRANSLATE_NOOP("Updates", "The list of releases has no valid signature."));
    case FeedFault::otherKey:
        return text(QT_TRANSLATE_NOOP("Updates", "The list of releases is signed by somebody else."));
    case FeedFault::wrongSignature:
        return text(QT_TRANSLATE_NOOP("Updates", "The list of releases is not the one that was signed."));
    case FeedFault::otherFile:
        return text(QT_TRANSLATE_NOOP("Updates", "The signature belongs to another file."));
    case FeedFault::notXml:
        return text(QT_TRANSLATE_NOOP("Updates", "The list of releases can't be read."));
    case FeedFault::entities:
        return text(
            QT_TRANSLATE_NOOP("Updates", "The list of releases declares a document type, which is not allowed."));
    case FeedFault::tooLarge:
        return text(QT_TRANSLATE_NOOP("Updates", "The list of releases is too large."));
    case FeedFault::notAVersion:
        return text(QT_TRANSLATE_NOOP("Updates", "The list of releases has a version that is none."));
    case FeedFault::badArtifact:
        return text(
            QT_TRANSLATE_NOOP("Updates", "The list of releases has a package without address, size or checksum."));
    case FeedFault::older:
        return text(QT_TRANSLATE_NOOP("Updates", "The list of releases is older than the one seen last."));
    case FeedFault::stillToCome:
        return text(QT_TRANSLATE_NOOP("Updates",
            "The list of releases was signed at a time that is still to come. Check this computer's clock."));
    }
    return {};
}

}
