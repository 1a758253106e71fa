// SPDX-License-Identifier: MIT
#include "platform/freedesktop/settings_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <algorithm>
#include <cerrno>

namespace quillo {

using namespace Qt::StringLiterals;

namespace {

constexpr QFileDevice::Permissions kOwnerReadsAndWrites =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner;

std::unexpected<Error> writeFailure(const QFileDevice& file, int systemError) {
    const ErrorKind kind = systemError == ENOSPC || systemError == EDQUOT
                               ? ErrorKind::DiskFull
                               : (file.error() == QFileDevice::PermissionsError ||
                                          systemError == EACCES || systemError == EROFS
                                      ? ErrorKind::NotPermitted
                                      : ErrorKind::Failed);
    return failure(kind, u"the settings cannot be written: "_s + file.errorString());
}

/// A text that begins with a byte-order mark does not come back as it was: a key is not found again
/// under its own name, or the next write changes the text.
bool wouldChange(const QJsonObject& object) {
    const QStringList keys = object.keys();
    return std::ranges::any_of(keys, [&](const QString& key) { return !object.contains(key); }) ||
           QJsonDocument::fromJson(QJsonDocument(object).toJson()).object() != object;
}

}  // namespace

SettingsFileState settingsFileState(const QString& path) {
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return {};
    }
    constexpr qint64 kNanoseconds = 1'000'000'000;
    return {status.st_ino, status.st_size,
            status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec};
}

Result<QJsonObject> readSettingsFile(const QString& path, qint64 largestBytes) {
    const QFileInfo info(path);
    if (!info.exists()) {
        return QJsonObject();
    }
    QFile file(path);
    // Opening a pipe would wait for its other end.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        return failure(ErrorKind::NotPermitted, u"the settings file cannot be read"_s);
    }
    const QByteArray bytes = file.read(largestBytes + 1);
    if (bytes.size() > largestBytes) {
        return failure(ErrorKind::TooLarge, u"the settings file is too large"_s);
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        return failure(ErrorKind::Malformed,
                       u"the settings file is no JSON: %1 at byte %2"_s.arg(error.errorString())
                           .arg(error.offset));
    }
    if (!document.isObject()) {
        return failure(ErrorKind::Malformed, u"the settings file holds no JSON object"_s);
    }
    QJsonObject values = document.object();
    if (wouldChange(values)) {
        return failure(ErrorKind::Malformed, u"the settings file holds an unreadable text"_s);
    }
    return values;
}

Result<void> writeSettingsFile(const QString& path, const QJsonObject& values,
                               const SettingsFileState& expected) {
    if (!makeFolderOf(path)) {
        return failure(ErrorKind::NotPermitted, u"the settings folder cannot be created"_s);
    }
    QSaveFile file(path);
    errno = 0;
    const QByteArray bytes = QJsonDocument(values).toJson();
    // The slow part, waiting for the disk, comes before the last look at what is to be replaced.
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.setPermissions(kOwnerReadsAndWrites) &&
        file.write(bytes) == bytes.size() && file.flush() && ::fsync(file.handle()) == 0;
    if (isWritten && settingsFileState(path) != expected) {
        file.cancelWriting();
        return failure(ErrorKind::Busy, u"the settings file was edited meanwhile"_s);
    }
    if (!isWritten || !file.commit()) {
        return writeFailure(file, errno);
    }
    return {};
}

Result<QString> setFileAside(const QString& path) {
    const QString stamp = QDateTime::currentDateTimeUtc().toString(u"yyyyMMdd-HHmmss"_s);
    QString target = path + u".unreadable-"_s + stamp;
    for (int number = 2; QFileInfo::exists(target); ++number) {
        target = u"%1.unreadable-%2-%3"_s.arg(path, stamp).arg(number);
    }
    if (!QFile::rename(path, target)) {
        return failure(ErrorKind::NotPermitted, u"the settings file cannot be put aside"_s);
    }
    return target;
}

bool makeFolderOf(const QString& filePath) {
    const QDir folder = QFileInfo(filePath).dir();
    if (folder.exists()) {
        return true;
    }
    constexpr auto ownerOnly =
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
    const QString path = folder.absolutePath();
    return QDir().mkpath(QFileInfo(path).absolutePath()) && QDir().mkdir(path, ownerOnly);
}

}  // namespace quillo
