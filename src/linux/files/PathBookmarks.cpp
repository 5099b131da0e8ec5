#include "linux/files/PathBookmarks.h"

#include "linux/files/BoundedCall.h"
#include "linux/files/FileDescriptor.h"

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
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillory {

namespace {

// The user has just chosen the folder and sees what becomes of it.
constexpr std::chrono::seconds chosenDriveAnswerTime { 2 };

// Bit for bit: JSON's integers end at 63 bits and inodes don't. The time in nanoseconds; not every file system keeps it.
struct FolderIdentity {
    qint64 inode = 0;
    std::optional<qint64> birthTime;
    bool operator==(FolderIdentity const&) const = default;
};

// Older tokens have no birth time, and the simplest have a path alone.
struct Token {
    QString path;
    std::optional<qint64> inode;
    std::optional<qint64> birthTime;
};

struct FolderEntry {
    FolderIdentity identity;
    std::pair<unsigned, unsigned> device;
};

std::expected<FolderEntry, SystemError> folderAt(QString const& path)
{
    struct statx entry {};
    if (statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_TYPE | STATX_INO | STATX_BTIME, &entry) != 0)
        return std::unexpected(SystemError::last());
    if (!S_ISDIR(entry.stx_mode))
        return std::unexpected(SystemError(ENOTDIR));
    FolderIdentity identity { static_cast<qint64>(entry.stx_ino), std::nullopt };
    if ((entry.stx_mask & STATX_BTIME) != 0)
        identity.birthTime = entry.stx_btime.tv_sec * 1'000'000'000 + entry.stx_btime.tv_nsec;
    return FolderEntry { identity, { entry.stx_dev_major, entry.stx_dev_minor } };
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
    if (!readNumber(object, QStringLiteral("inode"), token.inode)
        || !readNumber(object, QStringLiteral("birthTime"), token.birthTime))
        return std::nullopt;
    return token;
}

// The renamed folder beside its old place. Only on the file system of its parent, where a renamed folder stays. An inode
// alone proves nothing: it is handed out again as soon as its folder is removed.
std::optional<QString> renamedSibling(QString const& path, FolderIdentity const& wanted)
{
    auto const parent = QFileInfo(QDir::cleanPath(path)).absolutePath();
    auto const parentEntry = folderAt(parent);
    if (!parentEntry || !wanted.birthTime)
        return std::nullopt;
    QDirIterator entries(parent, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        auto sibling = entries.next();
        auto const entry = folderAt(sibling);
        if (entry && entry->identity == wanted && entry->device == parentEntry->device)
            return sibling;
    }
    return std::nullopt;
}

// A folder at the stored path comes first: the user put it there.
std::expected<FolderBookmarks::Resolved, SystemError> resolveToken(Token const& token)
{
    auto const identity = token.inode ? std::optional(FolderIdentity { *token.inode, token.birthTime }) : std::nullopt;
    auto const atPath = folderAt(token.path);
    if (atPath)
        return FolderBookmarks::Resolved { token.path, identity && *identity != atPath->identity };
    if (identity && atPath.error().code() == ENOENT) {
        if (auto const sibling = renamedSibling(token.path, *identity))
            return FolderBookmarks::Resolved { *sibling, true };
    }
    return std::unexpected(atPath.error());
}

std::expected<QByteArray, SystemError> makeToken(QByteArray const& path)
{
    std::unique_ptr<char, decltype([](char* text) { std::free(text); })> const real(
        realpath(path.constData(), nullptr));
    if (!real)
        return std::unexpected(SystemError::last());
    auto const realPath = QFile::decodeName(real.get());
    auto const entry = folderAt(realPath);
    if (!entry)
        return std::unexpected(entry.error());
    QJsonObject token { { QStringLiteral("path"), realPath }, { QStringLiteral("inode"), entry->identity.inode } };
    if (auto const birthTime = entry->identity.birthTime)
        token.insert(QStringLiteral("birthTime"), *birthTime);
    return QJsonDocument(token).toJson(QJsonDocument::Compact);
}

// Of a drive that does not answer nothing bad is known; who reads the folder will hear of it.
bool mayBeOpened(QByteArray const& path)
{
    auto const tryIt = [path] {
        return FileDescriptor(open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)).isOpen();
    };
    return resultWithin(driveAnswerTime, tryIt).value_or(true);
}

}

std::expected<QByteArray, SystemError> PathBookmarks::bookmark(QString const& path) const
{
    return resultWithin(chosenDriveAnswerTime, [name = QFile::encodeName(path)] {
        return makeToken(name);
    }).value_or(std::unexpected(SystemError(ETIMEDOUT)));
}

std::expected<FolderBookmarks::Resolved, SystemError> PathBookmarks::resolve(QByteArray const& bookmark) const
{
    auto const token = parseToken(bookmark);
    if (!token)
        return std::unexpected(SystemError(EINVAL));
    return resultWithin(driveAnswerTime, [token = *token] {
        return resolveToken(token);
    }).value_or(Resolved { token->path, false });
}

Registration PathBookmarks::startAccess(QString const& path)
{
    return mayBeOpened(QFile::encodeName(path)) ? Registration([] { }) : Registration();
}

bool PathBookmarks::isReadable(QString const& path) const
{
    auto const ask = [name = QFile::encodeName(path)] {
        return faccessat(AT_FDCWD, name.constData(), R_OK, AT_EACCESS) == 0;
    };
    return resultWithin(driveAnswerTime, ask).value_or(true);
}

}
