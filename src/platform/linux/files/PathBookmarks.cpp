#include "platform/linux/files/PathBookmarks.h"

#include "platform/linux/files/FileDescriptor.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillory {

namespace {

// Bit for bit: JSON's integers end at 63 bits and inodes don't.
struct Token {
    QString path;
    std::optional<qint64> device;
    std::optional<qint64> inode;
};

struct FolderIdentity {
    qint64 device = 0;
    qint64 inode = 0;
};

std::expected<FolderIdentity, SystemError> identityOfFolder(QString const& path)
{
    struct stat entry {};
    if (stat(QFile::encodeName(path).constData(), &entry) != 0)
        return std::unexpected(SystemError::last());
    if (!S_ISDIR(entry.st_mode))
        return std::unexpected(SystemError(ENOTDIR));
    return FolderIdentity { static_cast<qint64>(entry.st_dev), static_cast<qint64>(entry.st_ino) };
}

// False when the member is there and is no integer.
bool readNumber(QJsonObject const& object, QString const& key, std::optional<qint64>& number)
{
    auto const member = object.value(key);
    if (member.isUndefined())
        return true;
    if (!member.isDouble() || member.toInteger(0) != member.toInteger(1))
        return false;
    number = member.toInteger();
    return true;
}

std::optional<Token> parseToken(QByteArray const& bytes)
{
    auto const object = QJsonDocument::fromJson(bytes).object();
    Token token { object.value(QStringLiteral("path")).toString(), {}, {} };
    if (!QDir::isAbsolutePath(token.path) || token.path.contains(QChar::Null))
        return std::nullopt;
    if (!readNumber(object, QStringLiteral("device"), token.device)
        || !readNumber(object, QStringLiteral("inode"), token.inode))
        return std::nullopt;
    return token;
}

// The folder beside the old place that has this inode. Only on the file system of its parent, where a renamed folder
// stays: elsewhere the same number means nothing (every volume's root may have it).
std::optional<QString> siblingWithInode(QString const& path, qint64 inode)
{
    auto const parent = QFileInfo(QDir::cleanPath(path)).absolutePath();
    auto const parentIdentity = identityOfFolder(parent);
    if (!parentIdentity)
        return std::nullopt;
    QDirIterator entries(parent, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        auto const sibling = entries.next();
        auto const identity = identityOfFolder(sibling);
        if (identity && identity->inode == inode && identity->device == parentIdentity->device)
            return sibling;
    }
    return std::nullopt;
}

}

std::expected<QByteArray, SystemError> PathBookmarks::bookmark(QString const& path) const
{
    std::unique_ptr<char, decltype([](char* text) { std::free(text); })> const real(
        realpath(QFile::encodeName(path).constData(), nullptr));
    if (!real)
        return std::unexpected(SystemError::last());
    auto const realPath = QFile::decodeName(real.get());
    auto const identity = identityOfFolder(realPath);
    if (!identity)
        return std::unexpected(identity.error());
    return QJsonDocument(QJsonObject {
                             { QStringLiteral("path"), realPath },
                             { QStringLiteral("device"), identity->device },
                             { QStringLiteral("inode"), identity->inode },
                         })
        .toJson(QJsonDocument::Compact);
}

std::expected<FolderBookmarks::Resolved, SystemError> PathBookmarks::resolve(QByteArray const& bookmark) const
{
    auto const token = parseToken(bookmark);
    if (!token)
        return std::unexpected(SystemError(EINVAL));
    auto const atPath = identityOfFolder(token->path);
    bool const isSameFolder = atPath && (!token->inode || atPath->inode == *token->inode);
    if (isSameFolder)
        return Resolved { token->path, token->device && atPath->device != *token->device };
    if (token->inode) {
        if (auto const sibling = siblingWithInode(token->path, *token->inode))
            return Resolved { *sibling, true };
    }
    if (atPath)
        return Resolved { token->path, true };
    return std::unexpected(atPath.error());
}

Registration PathBookmarks::startAccess(QString const& path)
{
    FileDescriptor folder(open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen())
        return {};
    return Registration([folder = std::move(folder)]() mutable { folder = FileDescriptor(); });
}

bool PathBookmarks::isReadable(QString const& path) const
{
    return faccessat(AT_FDCWD, QFile::encodeName(path).constData(), R_OK, AT_EACCESS) == 0;
}

}
