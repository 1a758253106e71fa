// SPDX-License-Identifier: MIT
#pragma once

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include "platform/freedesktop/thumbnail_cache.h"

namespace quillo::testing {

/// A file and a thumbnail cache of its own on the disk.
class ThumbnailFiles final {
public:
    ThumbnailFiles() {
        QFile file(path());
        if (file.open(QIODevice::WriteOnly)) {
            file.write("document");
        }
    }

    [[nodiscard]] QString path() const {
        return m_folder.filePath(QStringLiteral("a b; (1) ä#%.pdf"));
    }
    [[nodiscard]] QString cacheFolder() const { return m_folder.filePath(QStringLiteral("cache")); }

    [[nodiscard]] qint64 modified() const {
        return QFileInfo(path()).lastModified().toSecsSinceEpoch();
    }

    /// Where the file's entry of that size lies.
    [[nodiscard]] QString entry(const QString& size) const {
        const QByteArray name =
            QCryptographicHash::hash(ThumbnailCache::uriOf(path()), QCryptographicHash::Md5)
                .toHex();
        const QString folder = cacheFolder() + u'/' + size;
        QDir().mkpath(folder);
        return folder + u'/' + QString::fromLatin1(name) + QStringLiteral(".png");
    }

    /// Puts a picture into the cache, as a thumbnailer does.
    void put(const QString& size, QSize pixels, const QByteArray& uri, const QString& time) const {
        QImage image(pixels, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.setText(QStringLiteral("Thumb::URI"), QString::fromLatin1(uri));
        image.setText(QStringLiteral("Thumb::MTime"), time);
        image.save(entry(size), "PNG");
    }
    void put(const QString& size, QSize pixels) const {
        put(size, pixels, ThumbnailCache::uriOf(path()), QString::number(modified()));
    }

private:
    QTemporaryDir m_folder;
};

}  // namespace quillo::testing
