// SPDX-License-Identifier: MIT
#include "model/store/store_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "base/unique_fd.h"
#include "model/store/sqlite_error.h"

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace quillo {
namespace {

constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr int kStoresKept = 3;
constexpr auto kAsidePrefix = "set-aside-"_L1;

std::unexpected<Error> systemFailure(const QString& what) {
    const int code = errno;
    return failure(errorKindFromSqlite(SQLITE_CANTOPEN, code),
                   what + u": "_s + QString::fromLocal8Bit(std::strerror(code)));
}

Result<void> restrictMode(const QByteArray& path, mode_t mode) {
    struct stat status = {};
    if (stat(path.constData(), &status) != 0) {
        return systemFailure(u"Cannot look at the store"_s);
    }
    // Another person's file keeps its mode; access() below decides whether it can be used.
    if ((status.st_mode & 0777 & ~mode) != 0) {
        (void)chmod(path.constData(), mode);
    }
    return {};
}

Result<void> prepareFolder(const QString& folder) {
    const QString parent = QFileInfo(folder).path();
    if (!QDir().mkpath(parent)) {
        return systemFailure(u"Cannot make the folder of the store's folder"_s);
    }
    const QByteArray path = QFile::encodeName(folder);
    if (mkdir(path.constData(), kFolderMode) != 0 && errno != EEXIST) {
        return systemFailure(u"Cannot make the store's folder"_s);
    }
    if (!QFileInfo(folder).isDir()) {
        return failure(ErrorKind::NotPermitted, u"A file is in the place of the store's folder."_s);
    }
    return restrictMode(path, kFolderMode);
}

// The side files get the mode of the store's file from SQLite, so it must be right at once.
Result<void> createFile(const QByteArray& path) {
    const UniqueFd file(open(path.constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kFileMode));
    if (!file.isValid() && errno != EEXIST) {
        return systemFailure(u"Cannot make the store's file"_s);
    }
    return {};
}

QStringList sideFileNames(const QString& name) {
    return {name, name + u".shm"_s, name + u".wal"_s, name + u"-shm"_s, name + u"-wal"_s};
}

QString freshAsideFolder(const QDir& folder, Timestamp now) {
    const qint64 milliseconds =
        std::chrono::floor<std::chrono::milliseconds>(now.time_since_epoch()).count();
    const QString name =
        kAsidePrefix +
        QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC).toString(u"yyyyMMdd-HHmmss-zzz"_s);
    QString candidate = name;
    for (int i = 2; folder.exists(candidate); ++i) {
        candidate = name + u"-%1"_s.arg(i);
    }
    return folder.filePath(candidate);
}

// The newest one stays even when a clock that was set back makes it look the oldest.
void removeOldest(const QString& file, const QString& newest) {
    QStringList folders = storesSetAside(file);
    folders.removeOne(newest);
    while (folders.size() >= kStoresKept) {
        QDir(folders.takeFirst()).removeRecursively();
    }
}

}  // namespace

Result<void> prepareStoreFile(const QString& file) {
    if (auto done = prepareFolder(QFileInfo(file).path()); !done) {
        return done;
    }
    const QByteArray path = QFile::encodeName(file);
    if (auto done = createFile(path); !done) {
        return done;
    }
    struct stat status = {};
    if (stat(path.constData(), &status) != 0) {
        return systemFailure(u"Cannot look at the store's file"_s);
    }
    if (!S_ISREG(status.st_mode)) {
        return failure(ErrorKind::Malformed, u"What is in the store's place is not a file."_s);
    }
    if (auto done = restrictMode(path, kFileMode); !done) {
        return done;
    }
    if (access(path.constData(), R_OK | W_OK) != 0) {
        return systemFailure(u"The store's file may not be used"_s);
    }
    return {};
}

Result<QString> setStoreAside(const QString& file, Timestamp now) {
    const QFileInfo info(file);
    QString aside = freshAsideFolder(info.dir(), now);
    if (mkdir(QFile::encodeName(aside).constData(), kFolderMode) != 0) {
        return systemFailure(u"Cannot make a folder for the old store"_s);
    }
    for (const QString& name : sideFileNames(info.fileName())) {
        const QByteArray from = QFile::encodeName(info.dir().filePath(name));
        const QByteArray to = QFile::encodeName(QDir(aside).filePath(name));
        if (rename(from.constData(), to.constData()) != 0 && errno != ENOENT) {
            return systemFailure(u"Cannot move the old store"_s);
        }
    }
    removeOldest(file, aside);
    return aside;
}

QStringList storesSetAside(const QString& file) {
    const QDir folder = QFileInfo(file).dir();
    // The names begin with the moment, so their order is that of time.
    const QFileInfoList entries = folder.entryInfoList(
        {kAsidePrefix + u'*'}, QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    QStringList paths;
    for (const QFileInfo& entry : entries) {
        paths += entry.filePath();
    }
    return paths;
}

bool removeStoresSetAside(const QString& file) {
    bool allGone = true;
    for (const QString& folder : storesSetAside(file)) {
        allGone = QDir(folder).removeRecursively() && allGone;
    }
    return allGone;
}

}  // namespace quillo
