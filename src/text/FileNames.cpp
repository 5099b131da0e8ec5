#include "text/FileNames.h"

#include "text/StrictUtf8.h"

namespace Quillory {

namespace {

// How many bytes a character has that starts with `lead`; 0 if none does.
qsizetype sequenceLength(uchar lead)
{
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    if (lead < 0xE0)
        return 2;
    return lead < 0xF0 ? 3 : 4;
}

void appendEscaped(QString& text, char byte)
{
    text += u'%';
    text += QString::fromLatin1(QByteArray(1, byte).toHex().toUpper());
}

QString escapedName(QByteArrayView bytes)
{
    QString text;
    for (qsizetype i = 0; i < bytes.size();) {
        auto const length = sequenceLength(static_cast<uchar>(bytes[i]));
        auto const character = length > 0 && length <= bytes.size() - i ? decodeStrictUtf8(bytes.sliced(i, length))
                                                                        : std::nullopt;
        // The escape sign is escaped as well, so that no two such names become one.
        if (!character || bytes[i] == '%') {
            appendEscaped(text, bytes[i]);
            ++i;
        } else {
            text += *character;
            i += length;
        }
    }
    return text;
}

// The position of the point before the extension, or -1.
qsizetype extensionPoint(QStringView name)
{
    auto const point = name.lastIndexOf(u'.');
    return point > 0 ? point : -1;
}

}

FileName FileName::fromBytes(QByteArrayView bytes)
{
    if (auto text = decodeStrictUtf8(bytes))
        return { std::move(*text), true };
    return { escapedName(bytes), false };
}

QStringView pathExtension(QStringView name)
{
    auto const point = extensionPoint(name);
    return point < 0 ? QStringView() : name.sliced(point + 1);
}

QStringView pathStem(QStringView name)
{
    auto const point = extensionPoint(name);
    return point < 0 ? name : name.first(point);
}

}
