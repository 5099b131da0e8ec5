#include "platform/linux/qt/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace Quillory {

namespace {

QClipboard::Mode modeOf(Clipboard::Pasteboard pasteboard)
{
    return pasteboard == Clipboard::Pasteboard::selection ? QClipboard::Selection : QClipboard::Clipboard;
}

bool isMissing(Clipboard::Pasteboard pasteboard)
{
    return pasteboard == Clipboard::Pasteboard::selection && !QGuiApplication::clipboard()->supportsSelection();
}

}

bool QtClipboard::setText(Pasteboard pasteboard, QString const& text)
{
    if (isMissing(pasteboard))
        return false;
    QGuiApplication::clipboard()->setText(text, modeOf(pasteboard));
    // The toolkit only warns when another program keeps the ownership. By content: a clipboard manager may have taken it
    // over meanwhile, with our text.
    return this->text(pasteboard) == text;
}

QString QtClipboard::text(Pasteboard pasteboard) const
{
    return isMissing(pasteboard) ? QString() : QGuiApplication::clipboard()->text(modeOf(pasteboard));
}

}
