#include "library/LibraryReference.h"

#include "text/StrictUtf8.h"

#include <QDir>
#include <QSet>

#include <algorithm>

namespace Quillory {

namespace {

constexpr qsizetype mostReferencedFolders = 256; // each costs one of the user's watches
constexpr qsizetype deepestReferencedFolder = 16;

bool isAsciiLetter(QChar character)
{
    return character.unicode() < 0x80 && character.isLetter();
}

bool isHexadecimal(char byte)
{
    return QByteArrayView("0123456789abcdefABCDEF").contains(byte);
}

bool hasScheme(QStringView reference)
{
    if (reference.isEmpty() || !isAsciiLetter(reference.front()))
        return false;
    for (auto const character : reference) {
        if (character == u':')
            return true;
        bool const isDigit = character >= u'0' && character <= u'9';
        if (!isAsciiLetter(character) && !isDigit && !QStringView(u"+-.").contains(character))
            return false;
    }
    return false;
}

// The reference without its percent escapes; as it is when one of them is malformed or they yield no UTF-8.
QByteArray withoutEscapes(QString const& reference)
{
    auto escaped = reference.toUtf8();
    QByteArray bytes;
    bytes.reserve(escaped.size());
    for (qsizetype at = 0; at < escaped.size(); ++at) {
        if (escaped.at(at) != '%') {
            bytes += escaped.at(at);
            continue;
        }
        auto const digits = escaped.mid(at + 1, 2);
        if (digits.size() != 2 || !std::ranges::all_of(digits, isHexadecimal))
            return escaped;
        bytes += QByteArray::fromHex(digits);
        at += 2;
    }
    return decodeStrictUtf8(bytes) ? bytes : escaped;
}

// The path that a reference asks for. Absent when it may not ask for any.
std::optional<QByteArray> askedPath(QString const& reference)
{
    if (reference.isEmpty() || reference.startsWith(u'/') || hasScheme(reference))
        return std::nullopt;
    auto path = withoutEscapes(reference);
    if (path.startsWith('/') || path.contains('\0'))
        return std::nullopt;
    return path;
}

// Without "." and "..", as far as the names alone tell.
QByteArray cleaned(QByteArray const& path)
{
    return QDir::cleanPath(QString::fromUtf8(path)).toUtf8();
}

std::optional<QByteArray> pathBelow(QByteArray const& folder, QByteArray const& path)
{
    auto const start = folder.endsWith('/') ? folder : folder + '/';
    if (!path.startsWith(start) || path.size() == start.size())
        return std::nullopt;
    return path.sliced(start.size());
}

void addFolders(QString const& reference, QSet<QString>& folders)
{
    auto const path = askedPath(reference);
    if (!path)
        return;
    auto const names = QString::fromUtf8(cleaned(*path)).split(u'/');
    if (names.first() == QLatin1StringView("..") || names.size() > deepestReferencedFolder + 1)
        return;
    QString folder;
    for (auto const& name : names.first(names.size() - 1)) {
        folder += folder.isEmpty() ? name : u'/' + name;
        folders.insert(folder);
    }
}

}

std::optional<QByteArray> resolveLibraryReference(QString const& reference, OpenFolder const& folder)
{
    auto const base = folder.realPath();
    auto const path = askedPath(reference);
    if (!base || !path)
        return std::nullopt;
    auto real = folder.realPath(*path);
    if (!real)
        real = folder.realPath(cleaned(*path)); // "gone/../x.png" means x.png
    return real ? pathBelow(*base, *real) : std::nullopt;
}

std::optional<QByteArray> readLibraryFile(QByteArray const& path, OpenFolder const& folder, qint64 limit)
{
    auto const file = folder.open(path);
    if (!file)
        return std::nullopt;
    auto const status = (*file)->status();
    if (!status || !status->isRegularFile || status->size < 0 || status->size > limit)
        return std::nullopt;
    // A folder on the way may have been moved out of the library while its names were walked.
    auto const base = folder.realPath();
    auto const real = (*file)->realPath();
    if (!base || !real || !pathBelow(*base, *real))
        return std::nullopt;
    auto bytes = (*file)->read(limit + 1);
    if (!bytes || bytes->isEmpty() || bytes->size() > limit)
        return std::nullopt;
    return *std::move(bytes);
}

QStringList referencedFolders(QList<Sheet> const& sheets)
{
    QSet<QString> folders;
    for (auto const& sheet : sheets) {
        if (sheet.parsed) {
            for (auto const& reference : sheet.parsed->imageSources())
                addFolders(reference, folders);
        } else if (sheet.shortcuts) {
            for (auto const& reference : sheet.shortcuts->icons())
                addFolders(reference, folders);
        }
    }
    QStringList ordered(folders.cbegin(), folders.cend());
    ordered.sort();
    return ordered.first(std::min(ordered.size(), mostReferencedFolders));
}

}
