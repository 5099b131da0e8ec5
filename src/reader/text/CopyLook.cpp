#include "reader/text/CopyLook.h"

#include "text/Graphemes.h"

#include <QCoreApplication>

namespace Quillory {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(ReaderTextView)
};

}

CopyLook CopyLook::of(bool copied, bool learningModeEnabled)
{
    auto const symbol = copied ? Symbol::checkmark : Symbol::documents;
    if (learningModeEnabled)
        return { symbol, Texts::tr("Copying is disabled in Learning Mode"), {} };
    if (copied)
        return { symbol, Texts::tr("Copied"), Texts::tr("Copied") };
    return { symbol, Texts::tr("Copy command"), {} };
}

QString CopyLook::label(QString const& text, qsizetype characters)
{
    return label(firstGraphemes(text, characters).toString());
}

QString CopyLook::label(QString const& text)
{
    return Texts::tr("Copy %1").arg(text);
}

}
