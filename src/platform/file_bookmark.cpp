// SPDX-License-Identifier: MIT
#include "platform/file_bookmark.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <QCborMap>
#include <QCborValue>
#include <QDir>
#include <QSysInfo>
#include <climits>
#include <memory>

namespace quillo {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kVersion = 1;
constexpr qsizetype kLargestBookmark = 16 * 1024;
constexpr int kMostFolderEntries = 10'000;

/// What stays the same when a file is renamed. The time of birth tells a renamed file from a new
/// one that was given the number of a deleted one; 0 where the file system does not keep it.
struct FileIdentity {
    qint64 device = 0;
    qint64 inode = 0;
    qint64 bornAt = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

struct Bookmark {
    QByteArray path;
    FileIdentity identity;
};

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

std::optional<FileIdentity> identityOf(const QByteArray& path) {
    struct statx status = {};
    constexpr unsigned wanted = STATX_INO | STATX_BTIME;
    if (::statx(AT_FDCWD, path.constData(), AT_SYMLINK_NOFOLLOW, wanted, &status) != 0) {
        return std::nullopt;
    }
    FileIdentity identity;
    identity.device = qint64(quint64(status.stx_dev_major) << 32 | status.stx_dev_minor);
    identity.inode = qint64(status.stx_ino);
    if ((status.stx_mask & STATX_BTIME) != 0) {
        identity.bornAt = status.stx_btime.tv_sec * 1'000'000'000 + status.stx_btime.tv_nsec;
    }
    return identity;
}

bool isLocalHost(const QString& host) {
    return host.isEmpty() || host.compare("localhost"_L1, Qt::CaseInsensitive) == 0 ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

/// The bytes of the path that the kernel knows; empty for what is no local file. Not every file
/// name is UTF-8, so the path stays bytes here.
QByteArray localPath(const QUrl& url) {
    if (url.scheme() != "file"_L1 || !isLocalHost(url.host())) {
        return {};
    }
    const QByteArray path =
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    return path.startsWith('/') && !path.contains('\0') ? path : QByteArray();
}

QUrl urlOfPath(const QByteArray& path) {
    // Cleaned first: the part that is no UTF-8 may be one that a ".." takes away.
    const QByteArray clean = QDir::cleanPath(QString::fromLatin1(path)).toLatin1();
    if (clean.isValidUtf8()) {
        return QUrl::fromLocalFile(QString::fromUtf8(clean));
    }
    return QUrl::fromEncoded("file://" + clean.toPercentEncoding("/!$&'()*+,;=:@"));
}

QByteArray encode(const Bookmark& bookmark) {
    const QCborMap map{{u"v"_s, kVersion},
                       {u"path"_s, bookmark.path},
                       {u"dev"_s, bookmark.identity.device},
                       {u"ino"_s, bookmark.identity.inode},
                       {u"born"_s, bookmark.identity.bornAt}};
    return QCborValue(map).toCbor();
}

std::optional<Bookmark> decode(const QByteArray& bytes) {
    if (bytes.size() > kLargestBookmark) {
        return std::nullopt;
    }
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(bytes, &error);
    // In what was read before an error a key may stand without its value; looking for one crashes.
    if (error.error != QCborError::NoError) {
        return std::nullopt;
    }
    const QCborMap map = value.toMap();
    const QCborValue device = map.value(u"dev"_s);
    const QCborValue inode = map.value(u"ino"_s);
    const Bookmark bookmark{
        map.value(u"path"_s).toByteArray(),
        {device.toInteger(), inode.toInteger(), map.value(u"born"_s).toInteger()}};
    const bool isSound = map.value(u"v"_s) == QCborValue(kVersion) && device.isInteger() &&
                         inode.isInteger() && bookmark.path.startsWith('/') &&
                         bookmark.path.size() < PATH_MAX && !bookmark.path.contains('\0');
    return isSound ? std::optional(bookmark) : std::nullopt;
}

/// The file of that identity in the folder where it used to be.
std::optional<QByteArray> findRenamed(const Bookmark& bookmark) {
    const QByteArray folderPath = bookmark.path.first(bookmark.path.lastIndexOf('/') + 1);
    const std::unique_ptr<DIR, CloseFolder> folder(::opendir(folderPath.constData()));
    if (!folder) {
        return std::nullopt;
    }
    for (int count = 0; count < kMostFolderEntries; ++count) {
        const dirent* entry = ::readdir(folder.get());
        if (entry == nullptr) {
            return std::nullopt;
        }
        QByteArray candidate = folderPath + entry->d_name;
        if (qint64(entry->d_ino) == bookmark.identity.inode &&
            identityOf(candidate) == bookmark.identity) {
            return candidate;
        }
    }
    return std::nullopt;
}

}  // namespace

Result<QByteArray> makeFileBookmark(const QUrl& url) {
    const std::optional<QUrl> normalized = normalizedFileUrl(url);
    if (!normalized) {
        return failure(ErrorKind::Unsupported, u"the address names no local file"_s);
    }
    const QByteArray path = localPath(*normalized);
    const std::optional<FileIdentity> identity = identityOf(path);
    if (!identity) {
        return failure(ErrorKind::NotFound, u"the file does not exist or cannot be reached"_s);
    }
    return encode({path, *identity});
}

Result<QUrl> resolveFileBookmark(const QByteArray& bookmark) {
    const std::optional<Bookmark> decoded = decode(bookmark);
    if (!decoded) {
        return failure(ErrorKind::Malformed, u"the bytes are no file bookmark"_s);
    }
    // Another file number under the same path is a file that its editor wrote anew.
    if (identityOf(decoded->path)) {
        return urlOfPath(decoded->path);
    }
    if (const std::optional<QByteArray> renamed = findRenamed(*decoded)) {
        return urlOfPath(*renamed);
    }
    return failure(ErrorKind::NotFound, u"the bookmarked file is gone"_s);
}

std::optional<QUrl> normalizedFileUrl(const QUrl& url) {
    const QByteArray path = localPath(url);
    return path.isEmpty() ? std::nullopt : std::optional(urlOfPath(path));
}

}  // namespace quillo
